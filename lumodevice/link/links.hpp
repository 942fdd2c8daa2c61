#pragma once

#include "lumodevice/host.hpp"
#include "lumodevice/link/gate.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/link/reports.hpp"
#include "lumodevice/link/serial_link.hpp"
#include "lumodevice/link/visa_com_link.hpp"
#include "lumodevice/link/visa_library_link.hpp"

namespace lumodevice::link {

/// The three ways to an instrument, of which one at a time carries commands, what may leave over
/// them, and what is reported of them.
struct Links {
  Links(form::Controls& form, const Host& host)
      : reports(form.panel),
        gate(form.panel, reports, host.observing),
        visaLibrary(host.visa, gate),
        visaCom(form, host.visaCom, gate),
        serial(form, host.serialDevices, gate) {}

  Reports reports;
  Gate gate;
  VisaLibraryLink visaLibrary;
  VisaComLink visaCom;
  SerialLink serial;

  /// The one that carries commands now: by the link name, and of the two VISA ones by optVisa2.
  /// Null where the name stands for none.
  [[nodiscard]] Transport* carrying(const LinkState& state, const form::Controls& form);
};

}  // namespace lumodevice::link
