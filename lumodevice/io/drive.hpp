#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/io/fault.hpp"

namespace lumodevice::io {

/// A file opened for binary access. Closed on destruction.
class LUMODEVICE_API BinaryFile {
 public:
  virtual ~BinaryFile() = default;
  /// Fills `data` from the next bytes of the file; what lies beyond its end comes out as zero.
  /// Returns the number of bytes that the file really had. Throws DriveFault.
  virtual std::size_t get(std::span<std::uint8_t> data) = 0;
  /// Writes at the current position, which starts at the file's first byte; the file is never
  /// shortened. Throws DriveFault (61 when the disk is full).
  virtual void put(std::span<const std::uint8_t> data) = 0;
};

/// Drive C: as the component sees it. Paths are written "C:\folder\name"; case does not matter.
///
///     if (host.drive.fileExists("C:\\temp\\zanbank.dev")) {
///       io::Bytes preset(892);
///       host.drive.open("C:\\temp\\zanbank.dev")->get(preset);
///     }
class LUMODEVICE_API Drive {
 public:
  virtual ~Drive() = default;
  [[nodiscard]] virtual bool fileExists(std::string_view path) const = 0;
  [[nodiscard]] virtual bool folderExists(std::string_view path) const = 0;
  /// The parent must exist. Throws DriveFault (75 when the name exists, 76 when the parent does
  /// not).
  virtual void createFolder(std::string_view path) = 0;
  /// Throws DriveFault(53) when there is no such file.
  virtual void remove(std::string_view path) = 0;
  /// Gives a file another name in the same folder; a file that had it is gone then. It happens as a
  /// whole or not at all. Throws DriveFault (53 when there is no file `from`).
  virtual void rename(std::string_view from, std::string_view to) = 0;
  /// Creates a missing file; keeps the content of one that exists. Throws DriveFault.
  [[nodiscard]] virtual std::unique_ptr<BinaryFile> open(std::string_view path) = 0;
  /// Puts a file with this content in the place of whatever was there: all of it, or the old file
  /// stays as it was. Made of the acts above, it goes by way of the file NAME.new; a drive that can
  /// do better does. Throws DriveFault.
  virtual void replace(std::string_view path, std::span<const std::uint8_t> data);
  /// Whether replace() would find room for so many bytes: asked before an instrument is asked for
  /// what could not be kept. Throws DriveFault where it would; a drive that cannot tell does
  /// nothing.
  virtual void expectRoom(std::string_view path, std::size_t bytes) const;
};

}  // namespace lumodevice::io
