#include "platform/posix/usbtmc_devices.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace lumodevice::posix {

namespace {

/// Texts come from the device; a descriptor of them must stay well below VI_FIND_BUFLEN.
constexpr std::size_t kLongestText = 100;

std::string cleaned(std::string text, std::string_view forbidden) {
  text.resize(std::min(text.size(), kLongestText));
  for (char& c : text) {
    if (c < ' ' || c > '~' || forbidden.find(c) != std::string_view::npos) c = '_';
  }
  return text;
}

/// Four hexadecimal digits of sysfs ("0a1f") as resource names write them.
std::string idText(const std::filesystem::path& file) {
  std::string digits = cleaned(firstLine(file), ":");
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
    std::string serial = cleaned(firstLine(usb / "serial"), ": ");
    std::string product = cleaned(firstLine(usb / "product"), "");
    if (serial.empty()) serial = "0";
    if (product.empty()) product = name;
    devices.push_back({.path = roots.dev / name,
                       .descriptor = "USB0::" + idText(usb / "idVendor") +
                                     "::" + idText(usb / "idProduct") + "::" + serial + "::INSTR",
                       .interfaceName = "USB0 (" + product + ")"});
  }
  return devices;
}

}  // namespace lumodevice::posix
