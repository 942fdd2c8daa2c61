#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/io/drive.hpp"

namespace zanctl {

/// Drive C: as the component sees it. While a transfer is staged, what the component writes or
/// deletes stays in memory and the drive behind is read only: what is to be kept of it is put there
/// afterwards, whole, and of a program that is ended in the middle nothing is left.
class StagedDrive : public lumodevice::io::Drive {
 public:
  /// Null: there is no drive behind, and everything stays in memory. It must outlive this one.
  explicit StagedDrive(Drive* behind) : behind_(behind) {}

  void beginStaging();
  /// Forgets what was staged, unless there is no drive behind.
  void endStaging();
  /// What was staged under that name; nothing where the component has put no file there.
  [[nodiscard]] std::optional<std::string> staged(std::string_view path) const;

  [[nodiscard]] bool fileExists(std::string_view path) const override;
  [[nodiscard]] bool folderExists(std::string_view path) const override;
  void createFolder(std::string_view path) override;
  void remove(std::string_view path) override;
  void rename(std::string_view from, std::string_view to) override;
  [[nodiscard]] std::unique_ptr<lumodevice::io::BinaryFile> open(std::string_view path) override;
  void replace(std::string_view path, std::span<const std::uint8_t> data) override;
  void expectRoom(std::string_view path, std::size_t bytes) const override;

 private:
  using Content = std::shared_ptr<std::string>;
  class File;

  [[nodiscard]] bool staging() const { return staging_ || behind_ == nullptr; }
  [[nodiscard]] Content contentOf(std::string_view path) const;

  Drive* behind_;
  bool staging_ = false;
  /// By path in small letters; null for a file that was removed.
  std::map<std::string, Content> files_;
};

}  // namespace zanctl
