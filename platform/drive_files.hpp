#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "lumodevice/io/drive.hpp"

/// What a drive kept in a folder asks of the system. Numbers of errors are errno's; 0 is none.
namespace lumodevice::platform {

/// A link in the place of a file is none of the drive's files: it may lead anywhere.
[[nodiscard]] bool isDriveFile(const std::filesystem::path& place);

/// False for what the system has no file of that name for: it would be a device, or another name.
[[nodiscard]] bool canBeOnDrive(std::string_view name);

[[nodiscard]] int createFolderAt(const std::filesystem::path& place);
[[nodiscard]] int removeFileAt(const std::filesystem::path& place);
[[nodiscard]] int renameFileTo(const std::filesystem::path& from, const std::filesystem::path& to);

/// Creates a missing file. One that may only be read is opened for reading: what is meant for
/// sending is often kept so. Throws DriveFault.
[[nodiscard]] std::unique_ptr<io::BinaryFile> openDriveFile(const std::filesystem::path& place);

/// Throws the DriveFault that stands for errno's `error`.
[[noreturn]] void failOnDrive(const std::filesystem::path& place, int error);
[[nodiscard]] int driveFaultNumber(int error);

}  // namespace lumodevice::platform
