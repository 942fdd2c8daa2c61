#include "simulator/memory/memory.hpp"

#include <stdexcept>

namespace zansim {
namespace {

constexpr MemoryFileSize kFiles[] = {
    {MemoryFile::Sequence, "SEQUENCE", 0, 9999},
    {MemoryFile::System, "SYSTEM", 5580, 5580},
    {MemoryFile::Preset, "PRESET", 892, 892},
};

constexpr std::size_t kBuiltInProgram = 640;

constexpr std::size_t kPage = 256;

/// A title and, behind it, pages that hold every byte once, for the step from byte to byte is odd.
/// It is another one in each page.
std::string factoryContents(std::string_view title, std::size_t size, std::size_t firstStep) {
  std::string bytes(title);
  for (std::size_t i = 0; bytes.size() < size; ++i) {
    const std::size_t step = firstStep + 2 * (i / kPage);
    bytes += static_cast<char>(i * step % kPage);
  }
  return bytes;
}

}  // namespace

std::span<const MemoryFileSize> memoryFiles() {
  return kFiles;
}

const MemoryFileSize& sizeOf(MemoryFile file) {
  return kFiles[static_cast<std::size_t>(file)];
}

Memory::Memory()
    : files_{factoryContents("BUILT-IN PROGRAM 1", kBuiltInProgram, 131),
             factoryContents("SYSTEM SETTINGS", sizeOf(MemoryFile::System).most, 37),
             factoryContents("PRESETS 1 TO 10", sizeOf(MemoryFile::Preset).most, 161)} {}

std::string_view Memory::contents(MemoryFile file) const {
  return files_[static_cast<std::size_t>(file)];
}

void Memory::store(MemoryFile file, std::string_view bytes) {
  const MemoryFileSize& size = sizeOf(file);
  if (bytes.size() < size.least || bytes.size() > size.most) {
    throw std::invalid_argument("the " + std::string(size.name) + " file cannot have " +
                                std::to_string(bytes.size()) + " bytes");
  }
  files_[static_cast<std::size_t>(file)] = bytes;
  ++changes_;
}

}  // namespace zansim
