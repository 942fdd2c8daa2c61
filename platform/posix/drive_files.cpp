#include "platform/drive_files.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

#include "platform/posix/file_descriptor.hpp"

namespace lumodevice::platform {

namespace {

namespace fs = std::filesystem;
using posix::FileDescriptor;

class DriveFile : public io::BinaryFile {
 public:
  DriveFile(FileDescriptor file, fs::path path) : file_(std::move(file)), path_(std::move(path)) {}

  std::size_t get(std::span<std::uint8_t> data) override {
    std::size_t filled = 0;
    while (filled < data.size()) {
      const ssize_t size = ::pread(file_.get(), data.data() + filled, data.size() - filled,
                                   position_ + static_cast<off_t>(filled));
      if (size < 0 && errno != EINTR) failOnDrive(path_, errno);
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
      if (size == 0) failOnDrive(path_, ENOSPC);
      if (size < 0 && errno != EINTR) failOnDrive(path_, errno);
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

bool isDriveFile(const fs::path& place) {
  std::error_code error;
  return fs::symlink_status(place, error).type() == fs::file_type::regular;
}

bool canBeOnDrive(std::string_view /*name*/) {
  return true;
}

int createFolderAt(const fs::path& place) {
  return ::mkdir(place.c_str(), 0777) == 0 ? 0 : errno;
}

int removeFileAt(const fs::path& place) {
  return ::unlink(place.c_str()) == 0 ? 0 : errno;
}

int renameFileTo(const fs::path& from, const fs::path& to) {
  return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

std::unique_ptr<io::BinaryFile> openDriveFile(const fs::path& place) {
  std::error_code missing;
  const fs::file_type kind = fs::symlink_status(place, missing).type();
  if (!missing && kind == fs::file_type::symlink) failOnDrive(place, ELOOP);
  if (!missing && kind != fs::file_type::regular) failOnDrive(place, EISDIR);
  constexpr int common = O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW;
  FileDescriptor file(::open(place.c_str(), O_RDWR | O_CREAT | common, 0666));
  if (!file) {
    const int error = errno;
    if (error == EACCES || error == EROFS) {
      file = FileDescriptor(::open(place.c_str(), O_RDONLY | common));
    }
    if (!file) failOnDrive(place, error);
  }
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) failOnDrive(place, errno);
  if (!S_ISREG(info.st_mode)) failOnDrive(place, EISDIR);
  return std::make_unique<DriveFile>(std::move(file), place);
}

}  // namespace lumodevice::platform
