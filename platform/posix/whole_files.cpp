#include "platform/whole_files.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "platform/posix/file_descriptor.hpp"

namespace lumodevice::platform {

namespace {

namespace fs = std::filesystem;
using posix::FileDescriptor;

constexpr mode_t kForAll = 0666;
constexpr mode_t kPermissions = 0777;

void requireRegular(const fs::path& file, const struct stat& info) {
  if (S_ISDIR(info.st_mode)) throw FileFault(file, EISDIR);
  if (S_ISLNK(info.st_mode)) {
    throw FileFault(file, ELOOP, "it is a symbolic link, which is not followed");
  }
  if (!S_ISREG(info.st_mode)) throw FileFault(file, EINVAL, "it is no regular file");
}

/// The folder of a file that is to be replaced, its name in there, and what has that name now.
struct Place {
  explicit Place(const fs::path& file) : path(file), name(file.filename().string()) {
    const fs::path above = file.parent_path();
    const fs::path parent = above.empty() ? fs::path(".") : above;
    folder = FileDescriptor(::open(parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder) fail();
    if (name.empty()) throw FileFault(path, EISDIR);
    struct stat info {};
    if (::fstatat(folder.get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
      requireRegular(path, info);
      if (::faccessat(folder.get(), name.c_str(), W_OK, AT_EACCESS) != 0) fail();
      former = info;
    } else if (errno != ENOENT) {
      fail();
    }
  }

  [[noreturn]] void fail() const { throw FileFault(path, errno); }

  fs::path path;
  std::string name;
  FileDescriptor folder;
  std::optional<struct stat> former;
};

constexpr std::string_view kFreshPrefix = ".lumodevice-";
constexpr std::string_view kFreshDigits = "0123456789abcdef";
constexpr std::size_t kFreshLength = 16;

/// A name that nothing else has; short, for that of the file may be as long as a name can be.
std::string freshName() {
  std::random_device random;
  std::string name(kFreshPrefix);
  for (std::size_t i = 0; i < kFreshLength; ++i) {
    name += kFreshDigits[random() % kFreshDigits.size()];
  }
  return name;
}

bool isFreshName(std::string_view name) {
  return name.starts_with(kFreshPrefix) && name.size() == kFreshPrefix.size() + kFreshLength &&
         name.find_first_not_of(kFreshDigits, kFreshPrefix.size()) == std::string_view::npos;
}

/// A new file in the folder of the place; gone at the end of its life unless it was given its name.
class Fresh {
 public:
  explicit Fresh(const Place& place) : place_(place) {
    constexpr int kTries = 100;
    for (int tries = 0; !file_ && tries < kTries; ++tries) {
      name_ = freshName();
      file_ = FileDescriptor(::openat(place_.folder.get(), name_.c_str(),
                                      O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kForAll));
      if (!file_ && errno != EEXIST) break;
    }
    if (!file_) place_.fail();
    // Tells the others that its owner lives; held until the file is closed, however that happens.
    (void)::flock(file_.get(), LOCK_SH | LOCK_NB);
  }
  ~Fresh() { dropName(); }
  Fresh(const Fresh&) = delete;
  Fresh& operator=(const Fresh&) = delete;

  [[nodiscard]] int descriptor() const { return file_.get(); }

  void dropName() {
    if (!name_.empty()) ::unlinkat(place_.folder.get(), name_.c_str(), 0);
    name_.clear();
  }

  FileDescriptor takeNameless() {
    dropName();
    return std::move(file_);
  }

  void takeThePlace() {
    if (::renameat(place_.folder.get(), name_.c_str(), place_.folder.get(), place_.name.c_str()) !=
        0) {
      place_.fail();
    }
    name_.clear();
  }

 private:
  const Place& place_;
  std::string name_;
  FileDescriptor file_;
};

/// An interrupt from the keyboard waits until there is no half-made file any more.
class SignalsWait {
 public:
  SignalsWait() {
    sigset_t ending;
    ::sigemptyset(&ending);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) ::sigaddset(&ending, signal);
    ::pthread_sigmask(SIG_BLOCK, &ending, &before_);
  }
  ~SignalsWait() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsWait(const SignalsWait&) = delete;
  SignalsWait& operator=(const SignalsWait&) = delete;

 private:
  sigset_t before_{};
};

void writeAll(const Place& place, int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) place.fail();
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

/// The name must be on the disk as well, or a power cut brings the former file back. Not every file
/// system can tell a folder to; the file is whole either way.
void syncFolder(const Place& place) {
  const FileDescriptor folder(
      ::openat(place.folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) (void)::fsync(folder.get());
}

/// A new file whose owner was killed before it could give it its name or remove it: one of this
/// user that nobody holds and that is older than any file takes to be written.
bool isAbandoned(const Place& place, const char* name) {
  constexpr std::time_t kOld = std::time_t{60} * 60;
  const FileDescriptor file(::openat(place.folder.get(), name,
                                     O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat info {};
  return file && ::fstat(file.get(), &info) == 0 && S_ISREG(info.st_mode) &&
         info.st_uid == ::geteuid() && std::time(nullptr) - info.st_mtime > kOld &&
         ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
}

/// The folder is only looked through where something was written anyway.
void removeAbandoned(const Place& place) {
  const int folder = ::openat(place.folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  DIR* const entries = folder < 0 ? nullptr : ::fdopendir(folder);
  if (entries == nullptr) {
    if (folder >= 0) (void)::close(folder);
    return;
  }
  while (const dirent* const entry = ::readdir(entries)) {
    if (isFreshName(entry->d_name) && isAbandoned(place, entry->d_name)) {
      (void)::unlinkat(place.folder.get(), entry->d_name, 0);
    }
  }
  (void)::closedir(entries);
}

}  // namespace

FileFault::FileFault(const fs::path& file, int error)
    : FileFault(file, error, std::generic_category().message(error)) {}

FileFault::FileFault(const fs::path& file, int error, const std::string& why)
    : std::runtime_error(file.string() + ": " + why), error_(error) {}

std::string readFile(const fs::path& file, std::size_t most, LastLink link) {
  const bool follows = link == LastLink::Followed;
  struct stat info {};
  // Before it is opened: that alone can do something to a device.
  if ((follows ? ::stat(file.c_str(), &info) : ::lstat(file.c_str(), &info)) != 0) {
    throw FileFault(file, errno);
  }
  requireRegular(file, info);
  const FileDescriptor opened(::open(
      file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | (follows ? 0 : O_NOFOLLOW)));
  if (!opened || ::fstat(opened.get(), &info) != 0) throw FileFault(file, errno);
  requireRegular(file, info);
  std::string bytes;
  std::array<char, 16384> piece{};
  ssize_t count = 0;
  while ((count = ::read(opened.get(), piece.data(), piece.size())) != 0) {
    if (count < 0 && errno != EINTR) throw FileFault(file, errno);
    if (count > 0) bytes.append(piece.data(), static_cast<std::size_t>(count));
    if (bytes.size() > most) {
      throw FileFault(file, EFBIG, "it has more than " + std::to_string(most) + " bytes");
    }
  }
  return bytes;
}

void replaceFile(const fs::path& file, std::string_view bytes) {
  const Place place(file);
  const SignalsWait untilItIsDone;
  Fresh fresh(place);
  writeAll(place, fresh.descriptor(), bytes);
  if (place.former) {
    // Whose file it was may be kept by the superuser alone; its permissions come last, for a change
    // of the owner takes some of them away.
    (void)!::fchown(fresh.descriptor(), place.former->st_uid, place.former->st_gid);
    if (::fchmod(fresh.descriptor(), place.former->st_mode & kPermissions) != 0) place.fail();
  }
  if (::fsync(fresh.descriptor()) != 0) place.fail();
  fresh.takeThePlace();
  removeAbandoned(place);
  syncFolder(place);
}

struct Room::Held {
  FileDescriptor file;
};

Room::Room(const fs::path& file, std::uint64_t bytes) {
  const Place place(file);
  const SignalsWait untilItIsDone;
  Fresh fresh(place);
  auto held = std::make_unique<Held>(Held{fresh.takeNameless()});
  const auto size = static_cast<off_t>(std::max<std::uint64_t>(bytes, 1));
  if (const int error = ::posix_fallocate(held->file.get(), 0, size); error != 0) {
    throw FileFault(file, error);
  }
  held_ = std::move(held);
}

Room::~Room() = default;
Room::Room(Room&& other) noexcept = default;
Room& Room::operator=(Room&& other) noexcept = default;

}  // namespace lumodevice::platform
