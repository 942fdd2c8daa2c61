#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "lumodevice/io/drive.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::support {

/// Drive C: in memory. The journal shows what changes it ("createFolder C:\temp", "remove ...",
/// "rename ... to ...", "open ...", "put COUNT bytes"); a call that fails throws DriveFault with
/// the code given to the script. Must outlive its files.
class MemoryDrive : public io::Drive {
 public:
  using Bytes = std::vector<std::uint8_t>;

  explicit MemoryDrive(Script& script) : script_(script) {}

  [[nodiscard]] bool fileExists(std::string_view path) const override;
  [[nodiscard]] bool folderExists(std::string_view path) const override;
  void createFolder(std::string_view path) override;
  void remove(std::string_view path) override;
  void rename(std::string_view from, std::string_view to) override;
  [[nodiscard]] std::unique_ptr<io::BinaryFile> open(std::string_view path) override;
  void expectRoom(std::string_view path, std::size_t bytes) const override;

  /// Bytes that are left; nothing is written in the journal about them.
  std::size_t room = std::numeric_limits<std::size_t>::max();

  /// The content of a file, made when it is missing; whatever its folder.
  [[nodiscard]] Bytes& content(std::string_view path);
  /// All files by their paths in small letters.
  [[nodiscard]] const std::map<std::string, Bytes, std::less<>>& files() const { return files_; }

 private:
  class File;

  void call(const std::string& line);

  Script& script_;
  std::set<std::string, std::less<>> folders_{"c:"};
  std::map<std::string, Bytes, std::less<>> files_;
};

}  // namespace lumodevice::support
