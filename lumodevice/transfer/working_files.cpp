#include "lumodevice/transfer/working_files.hpp"

#include <string>

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

WorkingFiles::File WorkingFiles::open(std::string_view path) {
  if (numberInUse_) {
    throw io::DriveFault(kFileAlreadyOpen, "another file is open under the number");
  }
  File file;
  file.file_ = drive_.open(path);
  numberInUse_ = true;
  file.number_.reset(&numberInUse_);
  return file;
}

void WorkingFiles::write(std::string_view path, std::span<const std::uint8_t> data) {
  open(path).put(data);
}

void WorkingFiles::replace(std::string_view path, std::span<const std::uint8_t> data) {
  const std::string fresh = std::string(path) + ".new";
  removeIfThere(fresh);
  try {
    write(fresh, data);
    drive_.rename(fresh, path);
  } catch (const io::DriveFault&) {
    attempt([&] { removeIfThere(fresh); });
    throw;
  }
}

std::size_t WorkingFiles::read(std::string_view path, std::span<std::uint8_t> data) {
  return open(path).get(data);
}

}  // namespace lumodevice::transfer
