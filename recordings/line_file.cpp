#include "recordings/line_file.hpp"

#include <cerrno>
#include <system_error>
#include <utility>

namespace lumodevice::recordings {

namespace {

std::string reason() {
  return std::generic_category().message(errno);
}

[[noreturn]] void cannotMake(const std::filesystem::path& file, const std::string& why) {
  throw WriteFault(file.string() + " cannot be made: " + why);
}

}  // namespace

LineFile::LineFile(std::filesystem::path file, Existing existing) : file_(std::move(file)) {
  std::error_code missing;
  const auto there = std::filesystem::symlink_status(file_, missing).type();
  const bool empties = existing == Existing::Emptied && there != std::filesystem::file_type::none &&
                       there != std::filesystem::file_type::not_found;
  if (empties && there != std::filesystem::file_type::regular) {
    cannotMake(file_, "what is there is no regular file");
  }
  if (existing == Existing::Refused && there != std::filesystem::file_type::not_found) {
    cannotMake(file_, std::make_error_code(std::errc::file_exists).message());
  }
  open_.reset(std::fopen(file_.string().c_str(), empties ? "wb" : "wbx"));
  if (!open_ && errno == EINVAL) {
    open_.reset(std::fopen(file_.string().c_str(), "wb"));  // where "x" is not known
  }
  if (!open_) {
    cannotMake(file_, reason());
  }
  (void)std::setvbuf(open_.get(), nullptr, _IONBF, 0);
}

void LineFile::write(std::string_view lines) {
  if (std::fwrite(lines.data(), 1, lines.size(), open_.get()) == lines.size()) {
    size_ += lines.size();
    return;
  }
  const std::string why = reason();
  std::clearerr(open_.get());
  std::error_code left;
  std::filesystem::resize_file(file_, size_, left);
  (void)std::fseek(open_.get(), static_cast<long>(size_), SEEK_SET);
  throw WriteFault(file_.string() + " cannot be written any more: " + why);
}

}  // namespace lumodevice::recordings
