#pragma once

#include <functional>
#include <iosfwd>
#include <string_view>

#include "lumodevice/io/clock.hpp"
#include "lumodevice/io/drive.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/io/visa.hpp"
#include "lumodevice/io/visa_com.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice {

/// What a host gives the component. Everything referred to must outlive the component, and is used
/// on the thread that calls the component alone.
struct Host {
  toolkit::EventLoop& loop;
  io::Visa& visa;
  io::VisaCom& visaCom;
  io::SerialDevices& serialDevices;
  io::Drive& drive;
  io::WallClock& wallClock;
  /// Shows an information box and returns when the operator has put it away.
  std::function<void(std::string_view text)> informationBox;
  /// Receives one line for each serial command without an answer; null: nothing is logged.
  std::ostream* log = nullptr;
};

}  // namespace lumodevice
