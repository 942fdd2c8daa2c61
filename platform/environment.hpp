#pragma once

#include <functional>
#include <optional>
#include <string>

namespace lumodevice::platform {

/// Looks a variable of the environment up; an empty one counts as none.
using Environment = std::function<std::optional<std::string>(const char* name)>;

/// The environment of this process.
[[nodiscard]] std::optional<std::string> processVariable(const char* name);

/// The VISA library that the user wants: LUMODEVICE_VISA_LIBRARY.
[[nodiscard]] std::optional<std::string> chosenVisaLibrary(const Environment& environment);

/// The folder that is drive C: where a program names none: LUMODEVICE_DRIVE_C, else a folder where
/// data of the user's programs lies; nothing when there is no home folder either. The variables of
/// the desktop count only when they hold absolute paths.
[[nodiscard]] std::optional<std::string> usualDriveC(const Environment& environment);

}  // namespace lumodevice::platform
