#pragma once

#include "lumodevice/host.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/link/serial_link.hpp"
#include "lumodevice/link/visa_com_link.hpp"
#include "lumodevice/link/visa_library_link.hpp"

namespace lumodevice::link {

/// The three ways to an instrument, of which one at a time carries commands.
struct Links {
  Links(form::Controls& form, const Host& host)
      : visaLibrary(host.visa), visaCom(form, host.visaCom), serial(form, host.serialDevices) {}

  VisaLibraryLink visaLibrary;
  VisaComLink visaCom;
  SerialLink serial;

  /// The one that carries commands now: by the link name, and of the two VISA ones by optVisa2.
  /// Null where the name stands for none.
  [[nodiscard]] Transport* carrying(const LinkState& state, const form::Controls& form);
};

}  // namespace lumodevice::link
