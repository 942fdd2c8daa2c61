#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/io/drive.hpp"

/// What the ready-made hosts of a POSIX system have in common.
namespace lumodevice::posix {

/// Drive C: in that folder; "": where usualDriveC() has it.
[[nodiscard]] std::unique_ptr<io::Drive> driveIn(const std::string& folder);

/// An information box as a line on standard error.
void printInformation(std::string_view text);

}  // namespace lumodevice::posix
