#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zansim {

enum class MemoryFile : std::uint8_t { Sequence, System, Preset };

/// How many bytes a memory file can have.
struct MemoryFileSize {
  MemoryFile file;
  std::string_view name;
  std::size_t least;
  std::size_t most;
};

/// Every memory file that there is, in the order of MemoryFile.
[[nodiscard]] std::span<const MemoryFileSize> memoryFiles();
[[nodiscard]] const MemoryFileSize& sizeOf(MemoryFile file);

/// What the instrument keeps when it is switched off.
class Memory {
 public:
  /// As it left the factory: a built-in program, settings and presets, made up of every byte that
  /// there is.
  Memory();

  [[nodiscard]] std::string_view contents(MemoryFile file) const;

  /// Throws std::invalid_argument, and keeps what it had, for more or fewer bytes than the file can
  /// have.
  void store(MemoryFile file, std::string_view bytes);

  /// How often something was stored.
  [[nodiscard]] std::uint64_t changes() const { return changes_; }

 private:
  std::array<std::string, 3> files_;
  std::uint64_t changes_ = 0;
};

}  // namespace zansim
