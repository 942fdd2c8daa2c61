#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "hosts/zanctl/mistake.hpp"

namespace zanctl {

class Station;
struct Options;

/// One command. `arguments` tells which words stand behind its name: none, "WORD", "[WORD]" for one that
/// may be left out, "WORD..." for one or more.
struct Command {
  std::string_view name;
  std::string_view arguments = "";
  std::string_view help = "";
  /// Null for a command that is not available yet.
  ExitStatus (*run)(Station& station, const Options& options) = nullptr;
  /// Runs on the simulated instrument whatever the options say.
  bool alwaysSimulated = false;

  [[nodiscard]] std::size_t most() const;
  [[nodiscard]] std::size_t least() const;
};

[[nodiscard]] std::span<const Command> commands();

}  // namespace zanctl
