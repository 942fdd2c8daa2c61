#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "lumodevice/io/drive.hpp"
#include "lumodevice/text/fault.hpp"

namespace lumodevice::transfer {

using Bytes = std::vector<std::uint8_t>;

[[nodiscard]] inline std::span<const std::uint8_t> asBytes(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}
[[nodiscard]] inline std::string_view asText(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The folder "C:\temp" with the component's files. Memory transfers and captures share one file
/// number, so only one of their files is open at a time: an operation that is started from within
/// the wait of one which holds a file open fails at its own.
class WorkingFiles {
 public:
  explicit WorkingFiles(io::Drive& drive) : drive_(drive) {}

  /// Creates "C:\temp" when it is missing. Throws DriveFault.
  void ensureFolder();

  [[nodiscard]] bool exists(std::string_view path) const { return drive_.fileExists(path); }
  void removeIfThere(std::string_view path);

  /// To be asked before an instrument is asked for what could not be kept. Throws DriveFault.
  void expectRoom(std::string_view path, std::size_t bytes) const {
    drive_.expectRoom(path, bytes);
  }

 private:
  struct GiveBack {
    void operator()(bool* inUse) const { *inUse = false; }
  };
  using Number = std::unique_ptr<bool, GiveBack>;

 public:
  /// A file under the shared number, until it goes out of scope.
  class File {
   public:
    File(File&&) = default;
    void put(std::span<const std::uint8_t> data) { file_->put(data); }
    std::size_t get(std::span<std::uint8_t> data) { return file_->get(data); }

   private:
    friend class WorkingFiles;
    File() = default;
    Number number_;
    std::unique_ptr<io::BinaryFile> file_;
  };

  /// Opens a file, made when it is missing. Throws DriveFault; 55 while another one is open.
  [[nodiscard]] File open(std::string_view path);

  /// Writes `data` at the start of a file; what it held beyond that stays. Throws DriveFault.
  void write(std::string_view path, std::span<const std::uint8_t> data);

  /// Puts a file with this content in the place of whatever was there: all of it, or the old file
  /// stays as it was. Throws DriveFault.
  void replace(std::string_view path, std::span<const std::uint8_t> data);

  /// The first bytes of a file, as many as there are in `data`; what the file has not is zero.
  /// Returns how many it had. Throws DriveFault.
  std::size_t read(std::string_view path, std::span<std::uint8_t> data);

 private:
  [[nodiscard]] Number takeNumber();

  io::Drive& drive_;
  bool numberInUse_ = false;
};

}  // namespace lumodevice::transfer
