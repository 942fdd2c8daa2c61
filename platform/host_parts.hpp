#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/io/drive.hpp"

/// What the ready-made hosts have in common.
namespace lumodevice::platform {

/// Drive C: in that folder; "": where usualDriveC() has it.
[[nodiscard]] std::unique_ptr<io::Drive> driveIn(const std::string& folder);

/// An information box as a line on standard error.
void printInformation(std::string_view text);

}  // namespace lumodevice::platform
