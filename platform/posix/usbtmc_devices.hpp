#pragma once

#include <string>
#include <vector>

#include "platform/posix/device_tree.hpp"

namespace lumodevice::posix {

/// A USBTMC instrument that the kernel shows as a character device.
struct UsbtmcDevice {
  std::filesystem::path path;
  std::string descriptor;     ///< "USB0::0xVVVV::0xPPPP::SERIAL::INSTR"
  std::string interfaceName;  ///< "USB0 (PRODUCT)"
  std::string product = {};   ///< what it calls itself; may be ""
};

/// The devices present now, in the order of their numbers. Nothing is opened: what is needed stands
/// in sysfs.
[[nodiscard]] std::vector<UsbtmcDevice> listUsbtmcDevices(const SystemRoots& roots);

}  // namespace lumodevice::posix
