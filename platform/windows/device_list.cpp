#include "platform/device_list.hpp"

#include <windows.h>

// Stands on <windows.h>.
#include <algorithm>
#include <array>
#include <map>
#include <setupapi.h>

#include "platform/serial_devices.hpp"
#include "platform/windows/serial_devices.hpp"
#include "platform/windows/text.hpp"

namespace lumodevice::platform {

namespace {

constexpr int kPorts = 16;
/// The class of devices that Windows has its ports in.
constexpr GUID kPortClass = {
    0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};

/// A text that the registry of devices has of one of them; "" where it has none.
std::string propertyOf(HDEVINFO set, SP_DEVINFO_DATA& device, DWORD property) {
  std::array<wchar_t, 256> text{};
  const bool read = ::SetupDiGetDeviceRegistryPropertyW(
                        set, &device, property, nullptr, reinterpret_cast<BYTE*>(text.data()),
                        static_cast<DWORD>((text.size() - 1) * sizeof(wchar_t)), nullptr) != 0;
  return read ? windows::narrow(text.data()) : std::string();
}

std::string portNameOf(HDEVINFO set, SP_DEVINFO_DATA& device) {
  const HKEY key =
      ::SetupDiOpenDevRegKey(set, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_QUERY_VALUE);
  if (key == INVALID_HANDLE_VALUE) return {};
  std::array<wchar_t, 64> text{};
  auto size = static_cast<DWORD>((text.size() - 1) * sizeof(wchar_t));
  const bool read = ::RegQueryValueExW(key, L"PortName", nullptr, nullptr,
                                       reinterpret_cast<BYTE*>(text.data()), &size) == 0;
  ::RegCloseKey(key);
  return read ? windows::narrow(text.data()) : std::string();
}

/// What the ports call themselves, by their names.
std::map<std::string, std::string> productsOfPorts() {
  std::map<std::string, std::string> products;
  const HDEVINFO set = ::SetupDiGetClassDevsW(&kPortClass, nullptr, nullptr, DIGCF_PRESENT);
  if (set == INVALID_HANDLE_VALUE) return products;
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof device;
  for (DWORD i = 0; ::SetupDiEnumDeviceInfo(set, i, &device) != 0; ++i) {
    products[portNameOf(set, device)] = propertyOf(set, device, SPDRP_DEVICEDESC);
  }
  ::SetupDiDestroyDeviceInfoList(set);
  return products;
}

}  // namespace

/// Whether a program may open a port, Windows tells when it does; who has it open, not at all.
DeviceList listDevices(const MachineSerialDevices& ports) {
  const auto products = productsOfPorts();
  const std::vector<std::string> present = windows::listComPorts();
  DeviceList list;
  list.allUsersSeen = false;
  const auto add = [&](int port, const std::string& name) {
    const auto product = products.find(name);
    ListedDevice device{.port = port,
                        .path = name,
                        .byId = "",
                        .product = product == products.end() ? std::string() : product->second,
                        .resource = "",
                        .access = std::nullopt};
    if (std::ranges::find(present, name) != present.end()) {
      device.access = DeviceAccess{.owner = "", .group = "", .mode = 0, .allowed = true};
    }
    list.serial.push_back(std::move(device));
  };
  for (int port = 1; port <= kPorts; ++port) {
    if (const std::string name = ports.deviceOf(port); !name.empty()) add(port, name);
  }
  for (const std::string& name : present) {
    if (std::ranges::find(list.serial, name, &ListedDevice::path) == list.serial.end()) {
      add(0, name);
    }
  }
  return list;
}

std::string permissionAdvice(const std::string& /*path*/) {
  return "close the program that has it open";
}

std::string permissionAdviceForResource(const std::string& /*resource*/) {
  return {};
}

}  // namespace lumodevice::platform
