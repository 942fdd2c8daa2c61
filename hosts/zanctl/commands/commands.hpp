#pragma once

#include <array>
#include <span>
#include <string_view>

#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

class Station;
struct Options;

/// A word behind a command; unnamed: none.
struct Argument {
  std::string_view name;
  std::string_view help;
  bool required = false;
  /// It may be repeated, and is the last.
  bool repeated = false;
};

/// One command of the command line.
struct Command {
  std::string_view name;
  std::string_view help;
  std::array<Argument, 3> arguments = {};
  ExitStatus (*run)(Station& station, const Options& options) = nullptr;
  /// Runs on the simulated instrument whatever the options say.
  bool alwaysSimulated = false;
  /// Keeps nothing on drive C: unless the command line names a folder for it.
  bool temporaryDrive = false;
  /// Needs a link that carries memory files and pictures; the VISA library link does not.
  bool transfers = false;
};

[[nodiscard]] std::span<const Command> commands();

}  // namespace zanctl
