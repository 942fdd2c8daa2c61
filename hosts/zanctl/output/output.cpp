#include "hosts/zanctl/output/output.hpp"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

FileOutput::FileOutput(const std::string& path)
    : descriptor_(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)),
      owned_(true) {
  if (descriptor_ < 0) {
    throw Unusable("cannot write " + path + ": " + std::generic_category().message(errno));
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
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
}

}  // namespace zanctl
