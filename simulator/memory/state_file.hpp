#pragma once

#include <stdexcept>
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

/// The state cannot be kept; the text names the file and says why.
class StateFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A file in which the memory files outlive the program: a regular one, and no symbolic link.
class StateFile {
 public:
  explicit StateFile(std::string path) : path_(std::move(path)) {}

  /// Memory as it left the factory where there is no such file yet. Throws std::invalid_argument,
  /// naming the file, where it cannot be read or holds no state.
  [[nodiscard]] Memory load() const;

  /// Throws StateFault where it cannot be written. What the file held
  /// before is only ever replaced as a whole, so it survives a failure and a crash.
  void save(const Memory& memory) const;

 private:
  std::string path_;
};

}  // namespace zansim
