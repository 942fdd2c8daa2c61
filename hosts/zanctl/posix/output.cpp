#include "hosts/zanctl/output/output.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

namespace {

[[noreturn]] void cannotWrite(const std::string& path, const std::string& why) {
  throw Unusable("cannot write " + path + ": " + why);
}

}  // namespace

FileOutput::FileOutput(const std::string& path)
    : descriptor_(::open(
          path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666)),
      owned_(true) {
  if (descriptor_ < 0) {
    cannotWrite(path, errno == ELOOP ? "it is a symbolic link, which is not followed"
                                     : std::generic_category().message(errno));
  }
  struct stat info {};
  const bool seen = ::fstat(descriptor_, &info) == 0;
  const bool regular = seen && S_ISREG(info.st_mode);
  if (regular && ::ftruncate(descriptor_, 0) == 0) {
    return;
  }
  const std::string why =
      regular || !seen ? std::generic_category().message(errno) : "it is no regular file";
  if (regular || !seen || !S_ISCHR(info.st_mode)) {
    ::close(descriptor_);
    cannotWrite(path, why);
  }
}

FileOutput::~FileOutput() {
  if (owned_) {
    ::close(descriptor_);
  }
}

bool FileOutput::isTerminal() const {
  return ::isatty(descriptor_) == 1;
}

void FileOutput::write(std::string_view text) {
  while (!text.empty() && error_ == 0) {
    const ssize_t written = ::write(descriptor_, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      pollfd reader{descriptor_, POLLOUT, 0};
      (void)::poll(&reader, 1, -1);
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
}

}  // namespace zanctl
