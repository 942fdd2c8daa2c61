#pragma once

#include <map>
#include <memory>
#include <string>

#include "lumodevice/io/serial_port.hpp"

namespace lumodevice::platform {

/// The serial ports of this machine: COM1 to COM16.
class MachineSerialDevices : public io::SerialDevices {
 public:
  /// The device behind a port number; "" where there is none.
  [[nodiscard]] virtual std::string deviceOf(int port) const = 0;
};

/// `given` has the devices that port numbers (1 to 16) stand for; where it is empty they stand for
/// the machine's own.
[[nodiscard]] std::unique_ptr<MachineSerialDevices> machineSerialDevices(
    std::map<int, std::string> given = {});

}  // namespace lumodevice::platform
