#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "hosts/zanctl/output/output.hpp"
#include "lumodevice/io/serial_port.hpp"

namespace zanctl {

/// Remembers which ports could be opened and why the others could not.
class WitnessedSerialDevices : public lumodevice::io::SerialDevices {
 public:
  /// `devices` must outlive this object.
  explicit WitnessedSerialDevices(SerialDevices& devices) : devices_(devices) {}
  [[nodiscard]] std::unique_ptr<lumodevice::io::SerialLine> open(
      int port, const lumodevice::io::SerialSettings& settings) override;
  [[nodiscard]] int portNamed(std::string_view device) override {
    return devices_.portNamed(device);
  }

  /// One line on why nothing was found, and what to try.
  [[nodiscard]] std::string advice() const;

 private:
  SerialDevices& devices_;
  std::set<int> opened_;
  /// Without the ports that do not exist.
  std::map<int, std::string> refused_;
};

/// Stands for the machine's serial devices where time is virtual: opens none, and says so once.
class RefusingSerialDevices : public lumodevice::io::SerialDevices {
 public:
  /// `errors` must outlive this object.
  explicit RefusingSerialDevices(Output& errors) : errors_(errors) {}
  [[nodiscard]] std::unique_ptr<lumodevice::io::SerialLine> open(
      int port, const lumodevice::io::SerialSettings& settings) override;
  [[nodiscard]] bool asked() const { return asked_; }

 private:
  Output& errors_;
  bool asked_ = false;
};

}  // namespace zanctl
