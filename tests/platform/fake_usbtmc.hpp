#pragma once

#include <filesystem>
#include <string>

#include "platform/posix/device_tree.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::posix {

/// Puts a USBTMC device into a faked /dev and /sys, with `device` (a pseudo-terminal) in its place.
inline void addUsbtmc(const TemporaryFolder& folder, const std::string& name,
                      const std::string& serial, const std::string& product,
                      const std::string& device) {
  namespace fs = std::filesystem;
  const fs::path usb = "sys/devices/usb-" + name;
  folder.write(usb / "idVendor", "0a1b\n");
  folder.write(usb / "idProduct", "c0de\n");
  if (!serial.empty()) folder.write(usb / "serial", serial + "\n");
  if (!product.empty()) folder.write(usb / "product", product + "\n");
  folder.write(usb / "interface" / "bInterfaceNumber", "00\n");
  fs::create_directories(folder.path() / "sys/class/usbmisc" / name);
  fs::create_symlink(folder.path() / usb / "interface",
                     folder.path() / "sys/class/usbmisc" / name / "device");
  fs::create_directories(folder.path() / "dev");
  if (!device.empty()) fs::create_symlink(device, folder.path() / "dev" / name);
}

inline SystemRoots rootsOf(const TemporaryFolder& folder) {
  return {.dev = folder.path() / "dev", .sys = folder.path() / "sys"};
}

}  // namespace lumodevice::posix
