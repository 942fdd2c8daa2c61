#include "platform/folder_drive.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <vector>

#include "platform/posix/file_descriptor.hpp"
#include "platform/posix/same_name.hpp"
#include "platform/whole_files.hpp"

namespace lumodevice::platform {

namespace {

namespace fs = std::filesystem;
using posix::FileDescriptor;
using posix::sameName;

constexpr int kFileNotFound = 53;
constexpr int kDiskFull = 61;
constexpr int kPermissionDenied = 70;
constexpr int kAccessError = 75;
constexpr int kPathNotFound = 76;

int faultNumber(int error) {
  switch (error) {
    case ENOSPC:
    case EDQUOT:
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

[[noreturn]] void fail(const fs::path& path, int error) {
  throw io::DriveFault(faultNumber(error),
                       path.string() + ": " + std::generic_category().message(error));
}

/// Runs an act on a whole file in the terms of a drive.
template <typename Act>
void asDrive(Act act) {
  try {
    act();
  } catch (const FileFault& fault) {
    throw io::DriveFault(faultNumber(fault.error()), fault.what());
  }
}

/// A link in the place of a file is none of the drive's files: it may lead anywhere.
bool isFile(const fs::path& place) {
  std::error_code error;
  return fs::symlink_status(place, error).type() == fs::file_type::regular;
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
  fs::path exact = folder / name;
  if (fs::exists(fs::symlink_status(exact, error))) return exact;
  std::string best;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string found = entry->path().filename().string();
    if (sameName(found, name) && (best.empty() || found < best)) best = found;
  }
  return best.empty() ? exact : folder / best;
}

class DriveFile : public io::BinaryFile {
 public:
  DriveFile(FileDescriptor file, fs::path path) : file_(std::move(file)), path_(std::move(path)) {}

  std::size_t get(std::span<std::uint8_t> data) override {
    std::size_t filled = 0;
    while (filled < data.size()) {
      const ssize_t size = ::pread(file_.get(), data.data() + filled, data.size() - filled,
                                   position_ + static_cast<off_t>(filled));
      if (size < 0 && errno != EINTR) fail(path_, errno);
      if (size == 0) break;
      if (size > 0) filled += static_cast<std::size_t>(size);
    }
    std::fill(data.begin() + static_cast<std::ptrdiff_t>(filled), data.end(), std::uint8_t{0});
    position_ += static_cast<off_t>(data.size());
    return filled;
  }

  void put(std::span<const std::uint8_t> data) override {
    while (!data.empty()) {
      const ssize_t size = ::pwrite(file_.get(), data.data(), data.size(), position_);
      if (size == 0) fail(path_, ENOSPC);
      if (size < 0 && errno != EINTR) fail(path_, errno);
      if (size < 0) continue;
      position_ += size;
      data = data.subspan(static_cast<std::size_t>(size));
    }
  }

 private:
  FileDescriptor file_;
  fs::path path_;
  off_t position_ = 0;
};

}  // namespace

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
  if (error) fail(root_, error.value());
}

bool FolderDrive::fileExists(std::string_view path) const {
  const auto place = locate(path);
  return place && isFile(*place);
}

bool FolderDrive::folderExists(std::string_view path) const {
  const auto place = locate(path);
  std::error_code error;
  return place && fs::is_directory(*place, error);
}

void FolderDrive::createFolder(std::string_view path) {
  const fs::path place = placeFor(path);
  if (::mkdir(place.c_str(), 0777) != 0) fail(place, errno);
}

void FolderDrive::remove(std::string_view path) {
  if (!fileExists(path)) {
    throw io::DriveFault(kFileNotFound, "file not found: " + std::string(path));
  }
  const auto place = locate(path);
  if (::unlink(place->c_str()) != 0) fail(*place, errno);
}

void FolderDrive::rename(std::string_view from, std::string_view to) {
  if (!fileExists(from)) {
    throw io::DriveFault(kFileNotFound, "file not found: " + std::string(from));
  }
  const auto old = locate(from);
  const auto place = locate(to);
  if (!place) throw io::DriveFault(kPathNotFound, "path not found: " + std::string(to));
  if (::rename(old->c_str(), place->c_str()) != 0) fail(*place, errno);
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

/// A file that may only be read is opened for reading: what is meant for sending is often kept so.
std::unique_ptr<io::BinaryFile> FolderDrive::open(std::string_view path) {
  const fs::path place = placeFor(path);
  std::error_code missing;
  const fs::file_type kind = fs::symlink_status(place, missing).type();
  if (!missing && kind == fs::file_type::symlink) fail(place, ELOOP);
  if (!missing && kind != fs::file_type::regular) fail(place, EISDIR);
  constexpr int common = O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW;
  FileDescriptor file(::open(place.c_str(), O_RDWR | O_CREAT | common, 0666));
  if (!file) {
    const int error = errno;
    if (error == EACCES || error == EROFS) {
      file = FileDescriptor(::open(place.c_str(), O_RDONLY | common));
    }
    if (!file) fail(place, error);
  }
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) fail(place, errno);
  if (!S_ISREG(info.st_mode)) fail(place, EISDIR);
  return std::make_unique<DriveFile>(std::move(file), place);
}

}  // namespace lumodevice::platform
