#include "simulator/commands/command_tables.hpp"
#include "simulator/mainframe.hpp"

namespace zansim {
namespace {

template <MemoryFile file>
void readFile(Call& call) {
  call.replyBlock(call.mainframe.memory().contents(file));
}

template <MemoryFile file>
void writeFile(Call& call) {
  const auto bytes = call.block(0);
  if (!bytes) {
    return;
  }
  const MemoryFileSize& size = sizeOf(file);
  if (bytes->size() > size.most) {
    call.fail(Error::TooMuchData);
  } else if (bytes->size() < size.least) {
    call.fail(Error::InvalidBlock);
  } else {
    call.mainframe.memory().store(file, *bytes);
  }
}

constexpr Row kRows[] = {
    {.header = ":MEMory:FILE:SEQuence", .query = readFile<MemoryFile::Sequence>},
    {.header = ":SYSTem:SET",
     .query = readFile<MemoryFile::System>,
     .set = writeFile<MemoryFile::System>,
     .setArguments = 1},
    {.header = ":MEMory:FILE:PRESet",
     .query = readFile<MemoryFile::Preset>,
     .set = writeFile<MemoryFile::Preset>,
     .setArguments = 1},
};

}  // namespace

std::span<const Row> memoryCommands() {
  return kRows;
}

}  // namespace zansim
