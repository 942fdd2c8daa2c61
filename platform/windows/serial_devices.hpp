#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/serial_devices.hpp"

namespace lumodevice::windows {

/// The COM ports of Windows. COM1 to COM16 stand for the devices that were given for them; where
/// none was given, for the ports of these names.
class ComPorts : public platform::MachineSerialDevices {
 public:
  explicit ComPorts(std::map<int, std::string> given = {}) : given_(std::move(given)) {}

  [[nodiscard]] std::unique_ptr<io::SerialLine> open(int port,
                                                     const io::SerialSettings& settings) override;
  [[nodiscard]] std::string deviceOf(int port) const override;
  /// A device that stands behind no port ("COM21") takes the last free one.
  [[nodiscard]] int portNamed(std::string_view device) override;

 private:
  static constexpr int kPorts = 16;

  std::map<int, std::string> given_;
  /// What was asked for by its name.
  std::map<int, std::string> named_;
};

/// The names of the COM ports that are there now ("COM3"), by their numbers.
[[nodiscard]] std::vector<std::string> listComPorts();

}  // namespace lumodevice::windows
