#include "hosts/zanctl/station/staged_drive.hpp"

#include <algorithm>
#include <array>
#include <cctype>

namespace zanctl {

using namespace lumodevice::io;

namespace {

constexpr int kFileNotFound = 53;
constexpr int kDiskFull = 61;
/// More than the component ever reads or writes.
constexpr std::size_t kMostBytes = std::size_t{64} << 20;

std::string keyOf(std::string_view path) {
  std::string key(path);
  std::ranges::transform(key, key.begin(), [](unsigned char letter) {
    return letter == '/' ? '\\' : static_cast<char>(std::tolower(letter));
  });
  return key;
}

std::string wholeFile(Drive& drive, std::string_view path) {
  const auto file = drive.open(path);
  std::string bytes;
  std::array<std::uint8_t, 16384> piece{};
  std::size_t count = piece.size();
  while (count == piece.size()) {
    count = file->get(piece);
    bytes.append(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
    if (bytes.size() > kMostBytes) {
      throw DriveFault(kDiskFull, std::string(path) + ": it is too long");
    }
  }
  return bytes;
}

}  // namespace

class StagedDrive::File : public BinaryFile {
 public:
  explicit File(Content content) : content_(std::move(content)) {}

  std::size_t get(std::span<std::uint8_t> data) override {
    const std::size_t start = std::min(position_, content_->size());
    const std::size_t count = std::min(data.size(), content_->size() - start);
    std::copy_n(content_->begin() + static_cast<std::ptrdiff_t>(start), count, data.begin());
    std::fill(data.begin() + static_cast<std::ptrdiff_t>(count), data.end(), std::uint8_t{0});
    position_ += data.size();
    return count;
  }

  void put(std::span<const std::uint8_t> data) override {
    if (data.size() > kMostBytes || position_ > kMostBytes - data.size()) {
      throw DriveFault(kDiskFull, "it is too long");
    }
    content_->resize(std::max(content_->size(), position_ + data.size()));
    std::ranges::copy(data, content_->begin() + static_cast<std::ptrdiff_t>(position_));
    position_ += data.size();
  }

 private:
  Content content_;
  std::size_t position_ = 0;
};

void StagedDrive::beginStaging() {
  staging_ = true;
}

void StagedDrive::endStaging() {
  staging_ = false;
  if (behind_ != nullptr) {
    files_.clear();
  }
}

std::optional<std::string> StagedDrive::staged(std::string_view path) const {
  const auto found = files_.find(keyOf(path));
  return found == files_.end() || !found->second ? std::nullopt : std::optional(*found->second);
}

/// Of a staged file, or of one of the drive behind; null where there is none.
StagedDrive::Content StagedDrive::contentOf(std::string_view path) const {
  const auto found = files_.find(keyOf(path));
  if (found != files_.end()) {
    return found->second;
  }
  const bool behind = behind_ != nullptr && behind_->fileExists(path);
  return behind ? std::make_shared<std::string>(wholeFile(*behind_, path)) : nullptr;
}

bool StagedDrive::fileExists(std::string_view path) const {
  const auto found = files_.find(keyOf(path));
  if (staging() && found != files_.end()) {
    return found->second != nullptr;
  }
  return behind_ != nullptr && behind_->fileExists(path);
}

bool StagedDrive::folderExists(std::string_view path) const {
  return staging() || behind_->folderExists(path);
}

void StagedDrive::createFolder(std::string_view path) {
  if (!staging()) {
    behind_->createFolder(path);
  }
}

void StagedDrive::remove(std::string_view path) {
  if (!staging()) {
    behind_->remove(path);
  } else if (!fileExists(path)) {
    throw DriveFault(kFileNotFound, "file not found: " + std::string(path));
  } else {
    files_[keyOf(path)] = nullptr;
  }
}

void StagedDrive::rename(std::string_view from, std::string_view to) {
  if (!staging()) {
    behind_->rename(from, to);
    return;
  }
  Content content = contentOf(from);
  if (!content) {
    throw DriveFault(kFileNotFound, "file not found: " + std::string(from));
  }
  files_[keyOf(from)] = nullptr;
  files_[keyOf(to)] = std::move(content);
}

std::unique_ptr<BinaryFile> StagedDrive::open(std::string_view path) {
  if (!staging()) {
    return behind_->open(path);
  }
  Content content = contentOf(path);
  if (!content) {
    content = std::make_shared<std::string>();
  }
  files_[keyOf(path)] = content;
  return std::make_unique<File>(std::move(content));
}

void StagedDrive::replace(std::string_view path, std::span<const std::uint8_t> data) {
  if (!staging()) {
    behind_->replace(path, data);
  } else {
    files_[keyOf(path)] = std::make_shared<std::string>(data.begin(), data.end());
  }
}

void StagedDrive::expectRoom(std::string_view path, std::size_t bytes) const {
  if (!staging()) {
    behind_->expectRoom(path, bytes);
  }
}

}  // namespace zanctl
