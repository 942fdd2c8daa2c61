#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "simulator/memory/memory.hpp"

namespace zansim {

/// The memory files as one text: the line "ZANSIM STATE 1" and, for each of memoryFiles(), its
/// name, a blank, a definite-length block of its bytes and a line feed.
[[nodiscard]] std::string stateText(const Memory& memory);

/// Throws std::invalid_argument, saying what is wrong, for a text that is no such state.
[[nodiscard]] Memory parseState(std::string_view text);

/// A file in which the memory files outlive the program.
class StateFile {
 public:
  explicit StateFile(std::string path) : path_(std::move(path)) {}

  /// Memory as it left the factory where there is no such file yet. Throws std::invalid_argument,
  /// naming the file, where it cannot be read or holds no state.
  [[nodiscard]] Memory load() const;

  /// Throws std::system_error, naming the file, where it cannot be written. What the file held
  /// before is only ever replaced as a whole, so it survives a failure and a crash.
  void save(const Memory& memory) const;

 private:
  std::string path_;
};

}  // namespace zansim
