#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "lumodevice/io/drive.hpp"

namespace lumodevice::platform {

/// Drive C: kept in a folder, which is created when something is first put on the drive. Names
/// match without regard to case (ASCII); a new one is created as it is written. A path cannot lead
/// out of the folder: ".." at its top stays there. Symbolic links to folders are followed, for the
/// user put them there; one in the place of a file is neither followed nor replaced.
class FolderDrive : public io::Drive {
 public:
  explicit FolderDrive(std::filesystem::path root) : root_(std::move(root)) {}

  [[nodiscard]] bool fileExists(std::string_view path) const override;
  [[nodiscard]] bool folderExists(std::string_view path) const override;
  void createFolder(std::string_view path) override;
  void remove(std::string_view path) override;
  void rename(std::string_view from, std::string_view to) override;
  [[nodiscard]] std::unique_ptr<io::BinaryFile> open(std::string_view path) override;
  void replace(std::string_view path, std::span<const std::uint8_t> data) override;
  void expectRoom(std::string_view path, std::size_t bytes) const override;

  /// Where a path leads in the machine's own terms: the entry that exists, or the name to create in
  /// a folder that does; nothing when the folder above it is missing or the path is not one of
  /// drive C:.
  [[nodiscard]] std::optional<std::filesystem::path> locate(std::string_view path) const;

 private:
  void createRoot() const;
  /// As locate(), for what will be put there. Throws DriveFault.
  [[nodiscard]] std::filesystem::path placeFor(std::string_view path) const;

  std::filesystem::path root_;
};

}  // namespace lumodevice::platform
