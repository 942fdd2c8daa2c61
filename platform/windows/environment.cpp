#include "platform/environment.hpp"

#include <windows.h>

#include "platform/windows/text.hpp"

namespace lumodevice::platform {

std::optional<std::string> processVariable(const char* name) {
  const std::wstring wanted = windows::wide(name);
  std::wstring value(::GetEnvironmentVariableW(wanted.c_str(), nullptr, 0), L'\0');
  value.resize(
      ::GetEnvironmentVariableW(wanted.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return value.empty() ? std::nullopt : std::optional(windows::narrow(value));
}

std::optional<std::string> chosenVisaLibrary(const Environment& environment) {
  return environment("LUMODEVICE_VISA_LIBRARY");
}

/// There is a real one here.
std::optional<std::string> usualDriveC(const Environment& environment) {
  return environment("LUMODEVICE_DRIVE_C").value_or("C:\\");
}

}  // namespace lumodevice::platform
