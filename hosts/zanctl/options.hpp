#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hosts/zanctl/output/output.hpp"
#include "platform/environment.hpp"

namespace zanctl {

struct Command;

using lumodevice::platform::Environment;

/// The link options that are clicked before the command runs.
enum class Link { Visa, VisaCom, Serial };

/// What the command line asks for.
struct Options {
  bool simulate = false;
  bool virtualTime = false;
  /// None: the platform's usual names, then the built-in layer.
  std::optional<std::string> visaLibrary;
  /// Port number to device; empty: the machine's own serial devices.
  std::map<int, std::string> ports;
  /// None when it is not named and there is no home folder either.
  std::optional<std::string> driveC;
  /// Drive C: is a temporary folder of this run.
  bool ownDrive = false;
  /// The terminal shows 24-bit colours.
  bool trueColour = false;
  Link link = Link::Visa;
  /// A file, or "-" for standard error.
  std::optional<std::string> trace;

  /// Of the command `readings`.
  struct Readings {
    int channel = 0;  ///< 0: all
    int count = 1;    ///< rounds; 0: until the program is ended
    int every =
        1000;  ///< milliseconds from the start of one round to that of the next; at most a day
    bool csv = false;
  };
  Readings readings;
  /// Of the command `files`: a file of the wrong size is sent, too.
  bool force = false;

  const Command* command = nullptr;
  /// The words behind the command.
  std::vector<std::string> arguments;
};

/// Reads a command line (without the program's name) and the variables that stand in for options.
/// None when only help or the version was asked for, which is then printed on `output`. Throws
/// WrongCommandLine.
[[nodiscard]] std::optional<Options> parseOptions(const std::vector<std::string>& words,
                                                  const Environment& environment, Output& output);

}  // namespace zanctl
