#include "platform/posix/usbtmc_devices.hpp"

#include <algorithm>
#include <string_view>

namespace lumodevice::posix {

namespace {

/// Four hexadecimal digits of sysfs ("0a1f") as resource names write them.
std::string idText(const std::filesystem::path& file) {
  std::string digits = cleanedText(firstLine(file), ":");
  std::transform(digits.begin(), digits.end(), digits.begin(),
                 [](char c) { return c >= 'a' && c <= 'f' ? static_cast<char>(c - 32) : c; });
  return "0x" + (digits.empty() ? "0000" : digits);
}

}  // namespace

std::vector<UsbtmcDevice> listUsbtmcDevices(const SystemRoots& roots) {
  const std::filesystem::path known = roots.sys / "class" / "usbmisc";
  std::vector<UsbtmcDevice> devices;
  for (const std::string& name : numberedEntries(known, "usbtmc")) {
    // "device" is the USB interface; the identity stands one level up, with the USB device.
    const std::filesystem::path usb = known / name / "device" / "..";
    std::string serial = cleanedText(firstLine(usb / "serial"), ": ");
    const std::string product = cleanedText(firstLine(usb / "product"));
    if (serial.empty()) serial = "0";
    devices.push_back({.path = roots.dev / name,
                       .descriptor = "USB0::" + idText(usb / "idVendor") +
                                     "::" + idText(usb / "idProduct") + "::" + serial + "::INSTR",
                       .interfaceName = "USB0 (" + (product.empty() ? name : product) + ")",
                       .product = product});
  }
  return devices;
}

}  // namespace lumodevice::posix
