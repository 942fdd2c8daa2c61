#include "tests/platform/small_disk.hpp"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <utility>

#include "platform/posix/file_descriptor.hpp"

namespace lumodevice::posix {

namespace {

/// What is mounted from then on is gone with the process.
bool ownMounts() {
  static const bool own = ::unshare(CLONE_NEWNS) == 0 &&
                          ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  return own;
}

}  // namespace

SmallDisk::SmallDisk(std::filesystem::path folder, std::size_t bytes)
    : folder_(std::move(folder)),
      mounted_(ownMounts() && ::mount("none", folder_.c_str(), "tmpfs", 0,
                                      ("size=" + std::to_string(bytes)).c_str()) == 0) {}

SmallDisk::~SmallDisk() {
  if (mounted_) ::umount2(folder_.c_str(), MNT_DETACH);
}

void SmallDisk::fill(const std::string& name, std::size_t left) const {
  struct statvfs disk {};
  (void)::statvfs(folder_.c_str(), &disk);
  const auto free = disk.f_bavail * disk.f_frsize;
  const FileDescriptor file(::open((folder_ / name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  (void)::posix_fallocate(file.get(), 0, static_cast<off_t>(free - left));
}

bool SmallDisk::makeReadOnly() const {
  return ::mount("none", folder_.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

}  // namespace lumodevice::posix
