#include "platform/environment.hpp"

#include <cstdlib>

namespace lumodevice::platform {

std::optional<std::string> processVariable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr || *value == '\0' ? std::nullopt : std::optional<std::string>(value);
}

std::optional<std::string> chosenVisaLibrary(const Environment& environment) {
  return environment("LUMODEVICE_VISA_LIBRARY");
}

std::optional<std::string> usualDriveC(const Environment& environment) {
  if (auto chosen = environment("LUMODEVICE_DRIVE_C")) {
    return chosen;
  }
  const auto absolute = [&](const char* name) {
    const auto value = environment(name);
    return value && value->starts_with('/') ? value : std::nullopt;
  };
  const auto home = absolute("HOME");
  const auto data = absolute("XDG_DATA_HOME");
  if (!data && !home) {
    return std::nullopt;
  }
  return data.value_or(home.value_or("") + "/.local/share") + "/lumodevice/drive_c";
}

}  // namespace lumodevice::platform
