#include "lumodevice/transfer/working_files.hpp"

namespace lumodevice::transfer {

namespace {

constexpr std::string_view kFolder = "C:\\temp";
constexpr int kFileAlreadyOpen = 55;

}  // namespace

void WorkingFiles::ensureFolder() {
  if (!drive_.folderExists(kFolder)) {
    drive_.createFolder(kFolder);
  }
}

void WorkingFiles::removeIfThere(std::string_view path) {
  if (exists(path)) {
    drive_.remove(path);
  }
}

WorkingFiles::Number WorkingFiles::takeNumber() {
  if (numberInUse_) {
    throw io::DriveFault(kFileAlreadyOpen, "another file is open under the number");
  }
  numberInUse_ = true;
  return Number(&numberInUse_);
}

WorkingFiles::File WorkingFiles::open(std::string_view path) {
  File file;
  file.number_ = takeNumber();
  file.file_ = drive_.open(path);
  return file;
}

void WorkingFiles::write(std::string_view path, std::span<const std::uint8_t> data) {
  open(path).put(data);
}

void WorkingFiles::replace(std::string_view path, std::span<const std::uint8_t> data) {
  const Number number = takeNumber();
  drive_.replace(path, data);
}

std::size_t WorkingFiles::read(std::string_view path, std::span<std::uint8_t> data) {
  return open(path).get(data);
}

}  // namespace lumodevice::transfer
