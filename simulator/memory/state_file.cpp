#include "simulator/memory/state_file.hpp"

#include <cerrno>

#include "platform/whole_files.hpp"
#include "simulator/wire/block.hpp"

namespace zansim {
namespace {

namespace platform = lumodevice::platform;

constexpr std::string_view kFirstLine = "ZANSIM STATE 1\n";
/// Many times what the memory files have.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

/// Cuts `start` off `text`; false where it begins otherwise.
bool cut(std::string_view& text, std::string_view start) {
  const bool found = text.starts_with(start);
  text.remove_prefix(found ? start.size() : 0);
  return found;
}

/// Cuts a file's bytes off `text`, with the name before and the line feed behind them.
std::string_view cutFile(std::string_view& text, std::string_view name) {
  if (cut(text, name) && cut(text, " ")) {
    const auto header = blockHeader(text);
    if (header && text.size() - header->size > header->length) {
      const std::string_view bytes = text.substr(header->size, header->length);
      text.remove_prefix(header->size + header->length);
      if (cut(text, "\n")) {
        return bytes;
      }
    }
  }
  throw std::invalid_argument("the " + std::string(name) + " file in it is damaged");
}

}  // namespace

std::string stateText(const Memory& memory) {
  std::string text(kFirstLine);
  for (const MemoryFileSize& file : memoryFiles()) {
    text.append(file.name).append(" ");
    appendBlock(text, memory.contents(file.file));
    text += '\n';
  }
  return text;
}

Memory parseState(std::string_view text) {
  if (!cut(text, kFirstLine)) {
    throw std::invalid_argument("it does not begin with the line \"ZANSIM STATE 1\"");
  }
  Memory memory;
  for (const MemoryFileSize& file : memoryFiles()) {
    memory.store(file.file, cutFile(text, file.name));
  }
  if (!text.empty()) {
    throw std::invalid_argument("something follows its last file");
  }
  return memory;
}

Memory StateFile::load() const {
  const std::string cannot = "cannot take the state from ";
  try {
    return parseState(platform::readFile(path_, kMostBytes, platform::LastLink::Refused));
  } catch (const platform::FileFault& fault) {
    if (fault.error() == ENOENT) {
      return {};
    }
    throw std::invalid_argument(cannot + fault.what());
  } catch (const std::invalid_argument& wrong) {
    throw std::invalid_argument(cannot + path_ + ": " + wrong.what());
  }
}

void StateFile::save(const Memory& memory) const {
  try {
    platform::replaceFile(path_, stateText(memory));
  } catch (const platform::FileFault& fault) {
    throw StateFault(std::string("cannot keep the state in ") + fault.what());
  }
}

}  // namespace zansim
