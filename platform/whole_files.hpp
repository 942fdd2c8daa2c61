#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

/// Files that are read and replaced as wholes. Regular files only: a pipe or a device in the place
/// of one is refused, for it could block or never end.
namespace lumodevice::platform {

/// What cannot be done with a file. The text names the file and says why.
class FileFault : public std::runtime_error {
 public:
  /// `error` is the system's number (ENOSPC, ...).
  FileFault(const std::filesystem::path& file, int error);
  FileFault(const std::filesystem::path& file, int error, const std::string& why);

  [[nodiscard]] int error() const { return error_; }

 private:
  int error_;
};

/// What becomes of a symbolic link where a file is read. Folders on the way to it may be links.
enum class LastLink { Followed, Refused };

/// The bytes of a file. Throws FileFault; for more than `most` bytes, too.
[[nodiscard]] std::string readFile(const std::filesystem::path& file, std::size_t most,
                                   LastLink link);

/// Puts a file with these bytes in the place of whatever file was there: all of it, on the disk, or
/// the former file stays as it was and nothing else is left; what one that was killed has left in
/// the folder goes with it, an hour later or more. Permissions stay. A symbolic link in
/// its place is neither followed nor replaced. Two that do this at once leave the whole file of the
/// one that came last. Throws FileFault.
void replaceFile(const std::filesystem::path& file, std::string_view bytes);

/// Room on the disk, held until the end of its life, for a file that will be replaced. The room has
/// no name: nothing of it is left when the program is killed.
class Room {
 public:
  /// Throws FileFault where replaceFile() would.
  Room(const std::filesystem::path& file, std::uint64_t bytes);
  ~Room();
  Room(Room&& other) noexcept;
  Room& operator=(Room&& other) noexcept;
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;

 private:
  struct Held;
  std::unique_ptr<Held> held_;
};

}  // namespace lumodevice::platform
