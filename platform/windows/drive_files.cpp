#include "platform/drive_files.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <utility>
#include <windows.h>

#include "platform/same_name.hpp"
#include "platform/windows/file_errors.hpp"
#include "platform/windows/handle.hpp"

namespace lumodevice::platform {

namespace {

namespace fs = std::filesystem;
using windows::Handle;

/// Names that lead to a device whatever follows their first dot.
constexpr std::array<std::string_view, 6> kDevices{"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};

bool isDevice(std::string_view name) {
  name = name.substr(0, name.find('.'));
  name = name.substr(0, name.find_last_not_of(' ') + 1);
  const auto named = [&](std::string_view device) { return sameName(name, device); };
  const bool numbered = name.size() == 4 && name[3] >= '0' && name[3] <= '9' &&
                        (sameName(name.substr(0, 3), "COM") || sameName(name.substr(0, 3), "LPT"));
  return numbered || std::ranges::any_of(kDevices, named);
}

int errnoOf(BOOL done) {
  return done != 0 ? 0 : windows::errnoOf(::GetLastError());
}

class DriveFile : public io::BinaryFile {
 public:
  DriveFile(Handle file, fs::path path) : file_(std::move(file)), path_(std::move(path)) {}

  std::size_t get(std::span<std::uint8_t> data) override {
    std::size_t filled = 0;
    while (filled < data.size()) {
      OVERLAPPED place = at(position_ + filled);
      DWORD size = 0;
      if (::ReadFile(file_.get(), data.data() + filled, piece(data.size() - filled), &size,
                     &place) == 0 &&
          ::GetLastError() != ERROR_HANDLE_EOF) {
        fail();
      }
      if (size == 0) break;
      filled += size;
    }
    std::fill(data.begin() + static_cast<std::ptrdiff_t>(filled), data.end(), std::uint8_t{0});
    position_ += data.size();
    return filled;
  }

  void put(std::span<const std::uint8_t> data) override {
    while (!data.empty()) {
      OVERLAPPED place = at(position_);
      DWORD size = 0;
      if (::WriteFile(file_.get(), data.data(), piece(data.size()), &size, &place) == 0) fail();
      if (size == 0) failOnDrive(path_, ENOSPC);
      position_ += size;
      data = data.subspan(size);
    }
  }

 private:
  static OVERLAPPED at(std::uint64_t position) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(position & 0xFFFFFFFF);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    return place;
  }
  static DWORD piece(std::size_t size) {
    return static_cast<DWORD>(
        std::min<std::size_t>(size, std::numeric_limits<std::int32_t>::max()));
  }
  [[noreturn]] void fail() const { failOnDrive(path_, windows::errnoOf(::GetLastError())); }

  Handle file_;
  fs::path path_;
  std::uint64_t position_ = 0;
};

Handle openWith(const fs::path& place, DWORD access, DWORD creation) {
  return Handle(::CreateFileW(place.c_str(), access, windows::kShareAll, nullptr, creation,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace

bool isDriveFile(const fs::path& place) {
  const DWORD attributes = ::GetFileAttributesW(place.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0;
}

/// A colon leads to another stream of a file; a dot or a blank at the end is dropped by Windows, so
/// that such a name would be that of another file.
bool canBeOnDrive(std::string_view name) {
  const auto forbidden = [](char c) {
    return static_cast<unsigned char>(c) < ' ' ||
           std::string_view("<>:\"|?*").find(c) != std::string_view::npos;
  };
  return !std::ranges::any_of(name, forbidden) && name.back() != '.' && name.back() != ' ' &&
         !isDevice(name);
}

/// Of what is there already Windows has several errors to tell: the drive itself is one more.
int createFolderAt(const fs::path& place) {
  const int error = errnoOf(::CreateDirectoryW(place.c_str(), nullptr));
  return error != 0 && ::GetFileAttributesW(place.c_str()) != INVALID_FILE_ATTRIBUTES ? EEXIST
                                                                                      : error;
}

int removeFileAt(const fs::path& place) {
  return errnoOf(::DeleteFileW(place.c_str()));
}

int renameFileTo(const fs::path& from, const fs::path& to) {
  const DWORD there = ::GetFileAttributesW(to.c_str());
  if (there != INVALID_FILE_ATTRIBUTES && (there & FILE_ATTRIBUTE_DIRECTORY) != 0) return EISDIR;
  return errnoOf(
      ::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

std::unique_ptr<io::BinaryFile> openDriveFile(const fs::path& place) {
  const DWORD attributes = ::GetFileAttributesW(place.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) failOnDrive(place, EISDIR);
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) failOnDrive(place, ELOOP);
  }
  const bool readOnly =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  Handle file;
  if (!readOnly) file = openWith(place, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
  if (!file) {
    const int error = readOnly ? EACCES : windows::errnoOf(::GetLastError());
    if (error == EACCES) file = openWith(place, GENERIC_READ, OPEN_EXISTING);
    if (!file) failOnDrive(place, error);
  }
  if (::GetFileType(file.get()) != FILE_TYPE_DISK) failOnDrive(place, EISDIR);
  return std::make_unique<DriveFile>(std::move(file), place);
}

}  // namespace lumodevice::platform
