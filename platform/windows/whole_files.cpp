#include "platform/whole_files.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>
#include <optional>
#include <random>
#include <system_error>
#include <windows.h>

#include "platform/windows/file_errors.hpp"
#include "platform/windows/handle.hpp"
#include "platform/windows/text.hpp"

namespace lumodevice::platform {

namespace {

namespace fs = std::filesystem;
using windows::Handle;

[[noreturn]] void fail(const fs::path& file) {
  const DWORD error = ::GetLastError();
  throw FileFault(file, windows::errnoOf(error), windows::errorText(error));
}

/// What has that name now; nothing where there is none.
std::optional<DWORD> attributesOf(const fs::path& file) {
  const DWORD attributes = ::GetFileAttributesW(file.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) return attributes;
  if (const DWORD error = ::GetLastError();
      error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) {
    fail(file);
  }
  return std::nullopt;
}

void requireNoFolder(const fs::path& file, DWORD attributes) {
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) throw FileFault(file, EISDIR);
}

void refuseLink(const fs::path& file, DWORD attributes) {
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    throw FileFault(file, ELOOP, "it is a symbolic link, which is not followed");
  }
}

void requireDisk(const fs::path& file, const Handle& opened) {
  if (::GetFileType(opened.get()) != FILE_TYPE_DISK) {
    throw FileFault(file, EINVAL, "it is no regular file");
  }
}

/// Throws for what may not be replaced.
std::optional<DWORD> replaceable(const fs::path& file) {
  if (!file.has_filename()) throw FileFault(file, EISDIR);
  const auto former = attributesOf(file);
  if (former) {
    requireNoFolder(file, *former);
    refuseLink(file, *former);
    if ((*former & FILE_ATTRIBUTE_READONLY) != 0) throw FileFault(file, EACCES);
    const Handle opened(::CreateFileW(file.c_str(), GENERIC_WRITE, windows::kShareAll, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!opened) fail(file);
    requireDisk(file, opened);
  }
  return former;
}

constexpr std::wstring_view kFreshStart = L".lumodevice-";
constexpr std::wstring_view kDigits = L"0123456789abcdef";
constexpr std::size_t kDigitsOfName = 16;

/// A name in the folder of the file that nothing else has.
fs::path freshName(const fs::path& file) {
  std::random_device random;
  std::wstring name(kFreshStart);
  for (std::size_t i = 0; i < kDigitsOfName; ++i) {
    name += kDigits[random() % kDigits.size()];
  }
  return file.parent_path() / name;
}

/// Deletes what programs that were killed have left in the folder of the file. What is young may be
/// another program's that goes on; what is open cannot be deleted.
void dropLeftOvers(const fs::path& file) {
  constexpr std::chrono::hours kOld{1};
  const fs::path folder = file.parent_path();
  std::error_code error;
  const auto now = fs::file_time_type::clock::now();
  for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error), end;
       !error && entry != end; entry.increment(error)) {
    const std::wstring name = entry->path().filename().wstring();
    std::error_code unknown;
    const bool fresh = name.starts_with(kFreshStart) &&
                       name.size() == kFreshStart.size() + kDigitsOfName &&
                       name.find_first_not_of(kDigits, kFreshStart.size()) == std::wstring::npos;
    if (fresh && now - entry->last_write_time(unknown) > kOld && !unknown) {
      (void)::DeleteFileW(entry->path().c_str());
    }
  }
}

/// A new file beside the one that will be replaced; gone at the end of its life unless it took the
/// other's place.
class Fresh {
 public:
  Fresh(const fs::path& file, DWORD flags) : file_(file), name_(freshName(file)) {
    opened_ = Handle(::CreateFileW(name_.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                   FILE_ATTRIBUTE_NORMAL | flags, nullptr));
    if (!opened_) fail(file_);
  }
  ~Fresh() {
    if (!name_.empty()) {
      opened_.reset();
      (void)::DeleteFileW(name_.c_str());
    }
  }
  Fresh(const Fresh&) = delete;
  Fresh& operator=(const Fresh&) = delete;

  void write(std::string_view bytes) {
    while (!bytes.empty()) {
      const auto piece = static_cast<DWORD>(
          std::min<std::size_t>(bytes.size(), std::numeric_limits<std::int32_t>::max()));
      DWORD count = 0;
      if (::WriteFile(opened_.get(), bytes.data(), piece, &count, nullptr) == 0) fail(file_);
      bytes.remove_prefix(count);
    }
    if (::FlushFileBuffers(opened_.get()) == 0) fail(file_);
  }

  /// The file keeps the permissions of the one that was there.
  void takeThePlace(bool ofAnother) {
    opened_.reset();
    const bool done =
        (ofAnother && ::ReplaceFileW(file_.c_str(), name_.c_str(), nullptr,
                                     REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0) ||
        ::MoveFileExW(name_.c_str(), file_.c_str(),
                      MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    if (!done) fail(file_);
    name_.clear();
  }

  Handle take() {
    name_.clear();
    return std::move(opened_);
  }

  [[nodiscard]] HANDLE get() const { return opened_.get(); }

 private:
  fs::path file_;
  fs::path name_;
  Handle opened_;
};

}  // namespace

FileFault::FileFault(const fs::path& file, int error)
    : FileFault(file, error, std::generic_category().message(error)) {}

FileFault::FileFault(const fs::path& file, int error, const std::string& why)
    : std::runtime_error(windows::narrow(file.wstring()) + ": " + why), error_(error) {}

std::string readFile(const fs::path& file, std::size_t most, LastLink link) {
  const auto attributes = attributesOf(file);
  if (!attributes) throw FileFault(file, ENOENT);
  requireNoFolder(file, *attributes);
  if (link == LastLink::Refused) refuseLink(file, *attributes);
  const Handle opened(::CreateFileW(file.c_str(), GENERIC_READ, windows::kShareAll, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!opened) fail(file);
  requireDisk(file, opened);
  std::string bytes;
  std::array<char, 16384> piece{};
  for (;;) {
    DWORD count = 0;
    if (::ReadFile(opened.get(), piece.data(), piece.size(), &count, nullptr) == 0) fail(file);
    if (count == 0) return bytes;
    bytes.append(piece.data(), count);
    if (bytes.size() > most) {
      throw FileFault(file, EFBIG, "it has more than " + std::to_string(most) + " bytes");
    }
  }
}

void replaceFile(const fs::path& file, std::string_view bytes) {
  const bool ofAnother = replaceable(file).has_value();
  Fresh fresh(file, 0);
  fresh.write(bytes);
  fresh.takeThePlace(ofAnother);
  dropLeftOvers(file);
}

struct Room::Held {
  Handle file;
};

Room::Room(const fs::path& file, std::uint64_t bytes) {
  (void)replaceable(file);
  Fresh fresh(file, FILE_FLAG_DELETE_ON_CLOSE);
  LARGE_INTEGER size{};
  size.QuadPart = static_cast<LONGLONG>(bytes);
  if (::SetFilePointerEx(fresh.get(), size, nullptr, FILE_BEGIN) == 0 ||
      ::SetEndOfFile(fresh.get()) == 0) {
    fail(file);
  }
  held_ = std::make_unique<Held>(Held{fresh.take()});
}

Room::~Room() = default;
Room::Room(Room&& other) noexcept = default;
Room& Room::operator=(Room&& other) noexcept = default;

}  // namespace lumodevice::platform
