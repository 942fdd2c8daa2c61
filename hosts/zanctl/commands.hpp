#pragma once

#include <span>
#include <string_view>

#include "hosts/zanctl/mistake.hpp"

namespace zanctl {

class Station;
struct Options;

/// How many words stand behind a command.
enum class Count { None, AtMostOne, OneOrMore };

/// One command of the command line.
struct Command {
  std::string_view name;
  std::string_view help;
  /// What the words behind it are.
  std::string_view argument = {};
  std::string_view argumentHelp = {};
  Count count = Count::None;
  /// Null for a command that is not available yet.
  ExitStatus (*run)(Station& station, const Options& options) = nullptr;
  /// Runs on the simulated instrument whatever the options say.
  bool alwaysSimulated = false;
};

[[nodiscard]] std::span<const Command> commands();

}  // namespace zanctl
