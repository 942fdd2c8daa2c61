#pragma once

#include <chrono>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/posix/device_tree.hpp"
#include "platform/serial_devices.hpp"

namespace lumodevice::posix {

/// Serial ports over termios. COM1 to COM16 stand for the devices that were given for them; where
/// none was given, for the machine's own: built-in ports with a real UART, then USB adapters, then
/// USB virtual ports, each kind by its number.
class TermiosDevices : public platform::MachineSerialDevices {
 public:
  struct Options {
    SystemRoots roots;
    /// What one write may take in all.
    std::chrono::milliseconds writeTimeout{2000};
  };

  explicit TermiosDevices(std::map<int, std::string> given = {}) : given_(std::move(given)) {}
  TermiosDevices(std::map<int, std::string> given, Options options)
      : given_(std::move(given)), options_(std::move(options)) {}

  [[nodiscard]] std::unique_ptr<io::SerialLine> open(int port,
                                                     const io::SerialSettings& settings) override;

  [[nodiscard]] std::string deviceOf(int port) const override;

  [[nodiscard]] int portNamed(std::string_view device) override;

 private:
  static constexpr int kPorts = 16;

  std::map<int, std::string> given_;
  /// What was asked for by its name.
  std::map<int, std::string> named_;
  Options options_;
};

/// The machine's serial devices that stand for COM1, COM2 ... where none is given.
[[nodiscard]] std::vector<std::string> listSerialDevices(const SystemRoots& roots);

}  // namespace lumodevice::posix
