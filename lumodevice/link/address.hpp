#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/io/serial_port.hpp"

namespace lumodevice::link {

/// Where one instrument is: behind a serial port, or a VISA resource.
struct Address {
  std::int16_t port = 0;  ///< 1 to 16; 0: not a serial one
  /// As the search over VISA takes it: a descriptor, or an expression that finds a serial number.
  std::string resource;
};

/// "COM3", a device of the machine ("/dev/ttyUSB0"), a descriptor ("USB0::...::INSTR") or a serial
/// number; none for what is none of these.
[[nodiscard]] std::optional<Address> parseAddress(std::string_view text,
                                                  io::SerialDevices& devices);

}  // namespace lumodevice::link
