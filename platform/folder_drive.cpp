#include "platform/folder_drive.hpp"

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>
#include <vector>

#include "platform/drive_files.hpp"
#include "platform/path_text.hpp"
#include "platform/same_name.hpp"
#include "platform/whole_files.hpp"

namespace lumodevice::platform {

namespace {

namespace fs = std::filesystem;

constexpr int kFileNotFound = 53;
constexpr int kDiskFull = 61;
constexpr int kPermissionDenied = 70;
constexpr int kAccessError = 75;
constexpr int kPathNotFound = 76;

/// Runs an act on a whole file in the terms of a drive.
template <typename Act>
void asDrive(Act act) {
  try {
    act();
  } catch (const FileFault& fault) {
    throw io::DriveFault(driveFaultNumber(fault.error()), fault.what());
  }
}

/// The names along a path of drive C:, ".." resolved; nothing for a path of another kind.
std::optional<std::vector<std::string>> namesOf(std::string_view path) {
  if (!sameName(path.substr(0, 2), "C:")) return {};
  if (path.find('\0') != std::string_view::npos) return {};
  std::vector<std::string> names;
  for (std::size_t begin = 2; begin <= path.size();) {
    const std::size_t end = std::min(path.find_first_of("\\/", begin), path.size());
    const std::string_view name = path.substr(begin, end - begin);
    begin = end + 1;
    if (name.empty() || name == ".") continue;
    if (name != "..") {
      if (!canBeOnDrive(name)) return {};
      names.emplace_back(name);
    } else if (!names.empty()) {
      names.pop_back();
    }
  }
  return names;
}

/// The entry of `folder` with this name, in another case if need be; `folder`/`name` when there is
/// none. Of several that differ in case alone the first in alphabetical order is taken, so that it
/// is always the same.
fs::path entryOf(const fs::path& folder, const std::string& name) {
  std::error_code error;
  fs::path exact = folder / pathOf(name);
  if (fs::exists(fs::symlink_status(exact, error))) return exact;
  std::string best;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string found = textOf(entry->path().filename());
    if (sameName(found, name) && (best.empty() || found < best)) best = found;
  }
  return best.empty() ? exact : folder / pathOf(best);
}

}  // namespace

int driveFaultNumber(int error) {
  switch (error) {
    case ENOSPC:
#ifdef EDQUOT
    case EDQUOT:
#endif
    case EFBIG:
      return kDiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
      return kPermissionDenied;
    case ENOENT:
    case ENOTDIR:
      return kPathNotFound;
    default:
      return kAccessError;
  }
}

void failOnDrive(const fs::path& path, int error) {
  throw io::DriveFault(driveFaultNumber(error),
                       textOf(path) + ": " + std::generic_category().message(error));
}

std::optional<fs::path> FolderDrive::locate(std::string_view path) const {
  const auto names = namesOf(path);
  if (!names) return {};
  fs::path place = root_;
  for (std::size_t i = 0; i < names->size(); ++i) {
    std::error_code error;
    if (i > 0 && !fs::is_directory(place, error)) return {};
    place = entryOf(place, (*names)[i]);
  }
  return place;
}

void FolderDrive::createRoot() const {
  std::error_code error;
  fs::create_directories(root_, error);
  if (error) failOnDrive(root_, error.default_error_condition().value());
}

bool FolderDrive::fileExists(std::string_view path) const {
  const auto place = locate(path);
  return place && isDriveFile(*place);
}

bool FolderDrive::folderExists(std::string_view path) const {
  const auto place = locate(path);
  std::error_code error;
  return place && fs::is_directory(*place, error);
}

void FolderDrive::createFolder(std::string_view path) {
  const fs::path place = placeFor(path);
  if (const int error = createFolderAt(place); error != 0) failOnDrive(place, error);
}

void FolderDrive::remove(std::string_view path) {
  if (!fileExists(path)) {
    throw io::DriveFault(kFileNotFound, "file not found: " + std::string(path));
  }
  const auto place = locate(path);
  if (const int error = removeFileAt(*place); error != 0) failOnDrive(*place, error);
}

void FolderDrive::rename(std::string_view from, std::string_view to) {
  if (!fileExists(from)) {
    throw io::DriveFault(kFileNotFound, "file not found: " + std::string(from));
  }
  const auto old = locate(from);
  const auto place = locate(to);
  if (!place) throw io::DriveFault(kPathNotFound, "path not found: " + std::string(to));
  if (const int error = renameFileTo(*old, *place); error != 0) failOnDrive(*place, error);
}

std::filesystem::path FolderDrive::placeFor(std::string_view path) const {
  createRoot();
  const auto place = locate(path);
  if (!place) throw io::DriveFault(kPathNotFound, "path not found: " + std::string(path));
  return *place;
}

void FolderDrive::replace(std::string_view path, std::span<const std::uint8_t> data) {
  const std::string_view bytes(reinterpret_cast<const char*>(data.data()), data.size());
  asDrive([&] { replaceFile(placeFor(path), bytes); });
}

void FolderDrive::expectRoom(std::string_view path, std::size_t bytes) const {
  asDrive([&] { const Room room(placeFor(path), bytes); });
}

std::unique_ptr<io::BinaryFile> FolderDrive::open(std::string_view path) {
  return openDriveFile(placeFor(path));
}

}  // namespace lumodevice::platform
