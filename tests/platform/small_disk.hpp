#pragma once

#include <filesystem>
#include <string>

namespace lumodevice::posix {

/// A file system of a few pages, mounted in a folder for this process and its children alone.
class SmallDisk {
 public:
  /// Mounts nothing where that is not allowed.
  SmallDisk(std::filesystem::path folder, std::size_t bytes);
  ~SmallDisk();
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  [[nodiscard]] bool mounted() const { return mounted_; }
  /// Puts a file of that name on it which takes all the room there is, but for `left` bytes.
  void fill(const std::string& name, std::size_t left = 0) const;
  /// Nothing can be changed from now on; whether that worked.
  [[nodiscard]] bool makeReadOnly() const;

 private:
  std::filesystem::path folder_;
  bool mounted_;
};

}  // namespace lumodevice::posix
