#include "hosts/zanctl/output/output.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <system_error>

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/windows/text.hpp"

namespace zanctl {

FileOutput::FileOutput(const std::string& path)
    : descriptor_(::_wopen(wide(path).c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY,
                           _S_IREAD | _S_IWRITE)),
      owned_(true) {
  if (descriptor_ < 0) {
    throw Unusable("cannot write " + path + ": " + std::generic_category().message(errno));
  }
}

FileOutput::~FileOutput() {
  if (owned_) {
    ::_close(descriptor_);
  }
}

bool FileOutput::isTerminal() const {
  return ::_isatty(descriptor_) != 0;
}

/// A pipe whose reader is gone is EINVAL to the C library of Windows; EPIPE means it everywhere.
void FileOutput::write(std::string_view text) {
  constexpr std::size_t kPiece = std::size_t{1} << 16;
  while (!text.empty() && error_ == 0) {
    const int written =
        ::_write(descriptor_, text.data(), static_cast<unsigned>(std::min(text.size(), kPiece)));
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else {
      error_ = errno == EINVAL ? EPIPE : errno;
    }
  }
}

}  // namespace zanctl
