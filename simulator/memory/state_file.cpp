#include "simulator/memory/state_file.hpp"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

#include "simulator/descriptor.hpp"
#include "simulator/wire/block.hpp"

namespace zansim {
namespace {

constexpr std::string_view kFirstLine = "ZANSIM STATE 1\n";
constexpr mode_t kForAll = 0666;

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

[[noreturn]] void failToRead() {
  throw std::invalid_argument(std::generic_category().message(errno));
}

std::string readAll(const Descriptor& file) {
  std::string text;
  std::array<char, 4096> bytes{};
  ssize_t count = 0;
  while ((count = ::read(file.get(), bytes.data(), bytes.size())) > 0) {
    text.append(bytes.data(), static_cast<std::size_t>(count));
  }
  if (count < 0) {
    failToRead();
  }
  return text;
}

bool writeAll(const Descriptor& file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(file.get(), text.data(), text.size());
    if (count < 0) {
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return ::fsync(file.get()) == 0;
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
  try {
    const Descriptor file(::open(path_.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.isOpen()) {
      return parseState(readAll(file));
    }
    if (errno != ENOENT) {
      failToRead();
    }
    return {};
  } catch (const std::invalid_argument& wrong) {
    throw std::invalid_argument("cannot take the state from " + path_ + ": " + wrong.what());
  }
}

void StateFile::save(const Memory& memory) const {
  const std::string fresh = path_ + ".new";
  const Descriptor file(::open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kForAll));
  if (!file.isOpen() || !writeAll(file, stateText(memory)) ||
      std::rename(fresh.c_str(), path_.c_str()) != 0) {
    const int error = errno;
    ::unlink(fresh.c_str());
    throw std::system_error(error, std::generic_category(), "cannot keep the state in " + path_);
  }
}

}  // namespace zansim
