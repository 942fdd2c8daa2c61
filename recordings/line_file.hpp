#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace lumodevice::recordings {

/// A file that cannot be made or written; the text names it and says why.
class WriteFault : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// A file that grows by whole lines, each handed to the system at once: a program that is killed
/// loses none that it wrote, and no line is ever there in part.
class LineFile {
 public:
  enum class Existing { Refused, Emptied };

  /// A folder, a device and a symbolic link in its place are refused. Throws WriteFault.
  LineFile(std::filesystem::path file, Existing existing);

  /// Throws WriteFault where they do not fit; nothing of them is in the file then, and a later call
  /// may fare better.
  void write(std::string_view lines);

  [[nodiscard]] const std::filesystem::path& file() const { return file_; }
  [[nodiscard]] std::uint64_t size() const { return size_; }

 private:
  struct Close {
    void operator()(std::FILE* file) const { (void)std::fclose(file); }
  };

  std::filesystem::path file_;
  std::unique_ptr<std::FILE, Close> open_;
  std::uint64_t size_ = 0;
};

}  // namespace lumodevice::recordings
