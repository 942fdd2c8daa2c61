#include "tests/support/memory_drive.hpp"

#include <algorithm>
#include <cctype>

namespace lumodevice::support {

namespace {

constexpr int kNotFound = 53;
constexpr int kFull = 61;
constexpr int kNameExists = 75;
constexpr int kPathNotFound = 76;

std::string lower(std::string_view path) {
  std::string text(path);
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return text;
}

std::string parent(const std::string& path) {
  const auto slash = path.rfind('\\');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

}  // namespace

class MemoryDrive::File : public io::BinaryFile {
 public:
  File(MemoryDrive& drive, Bytes& bytes) : drive_(drive), bytes_(bytes) {}

  std::size_t get(std::span<std::uint8_t> data) override {
    const std::size_t there = bytes_.size() - std::min(position_, bytes_.size());
    const std::size_t count = std::min(there, data.size());
    std::fill(data.begin(), data.end(), std::uint8_t{0});
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(bytes_.size() - there), count,
                data.begin());
    position_ += data.size();
    return count;
  }

  void put(std::span<const std::uint8_t> data) override {
    drive_.call("put " + std::to_string(data.size()) + " bytes");
    bytes_.resize(std::max(bytes_.size(), position_ + data.size()));
    std::copy(data.begin(), data.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(position_));
    position_ += data.size();
  }

 private:
  MemoryDrive& drive_;
  Bytes& bytes_;
  std::size_t position_ = 0;
};

bool MemoryDrive::fileExists(std::string_view path) const {
  return files_.contains(lower(path));
}

bool MemoryDrive::folderExists(std::string_view path) const {
  return folders_.contains(lower(path));
}

void MemoryDrive::createFolder(std::string_view path) {
  call("createFolder " + std::string(path));
  const std::string name = lower(path);
  if (folders_.contains(name) || files_.contains(name)) {
    throw io::DriveFault(kNameExists, name);
  }
  if (!folders_.contains(parent(name))) {
    throw io::DriveFault(kPathNotFound, name);
  }
  folders_.insert(name);
}

void MemoryDrive::remove(std::string_view path) {
  call("remove " + std::string(path));
  if (files_.erase(lower(path)) == 0) {
    throw io::DriveFault(kNotFound, std::string(path));
  }
}

void MemoryDrive::rename(std::string_view from, std::string_view to) {
  call("rename " + std::string(from) + " to " + std::string(to));
  auto file = files_.extract(lower(from));
  if (file.empty()) {
    throw io::DriveFault(kNotFound, std::string(from));
  }
  files_.erase(lower(to));
  file.key() = lower(to);
  files_.insert(std::move(file));
}

std::unique_ptr<io::BinaryFile> MemoryDrive::open(std::string_view path) {
  call("open " + std::string(path));
  if (!folders_.contains(parent(lower(path)))) {
    throw io::DriveFault(kPathNotFound, std::string(path));
  }
  return std::make_unique<File>(*this, content(path));
}

void MemoryDrive::expectRoom(std::string_view path, std::size_t bytes) const {
  if (bytes > room) {
    throw io::DriveFault(kFull, std::string(path));
  }
}

MemoryDrive::Bytes& MemoryDrive::content(std::string_view path) {
  return files_[lower(path)];
}

void MemoryDrive::call(const std::string& line) {
  if (const int code = script_.call(line); code != 0) {
    throw io::DriveFault(code, line);
  }
}

}  // namespace lumodevice::support
