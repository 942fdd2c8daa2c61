#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace lumodevice::posix {

/// A new empty folder, removed with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// Creates the file, with the folders above it.
  // NOLINTNEXTLINE(modernize-use-nodiscard): often called for the file alone
  std::filesystem::path write(const std::filesystem::path& name, std::string_view content) const;
  [[nodiscard]] std::string read(const std::filesystem::path& name) const;

 private:
  std::filesystem::path path_;
};

}  // namespace lumodevice::posix
