#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/zanctl/commands/command.hpp"
#include "hosts/zanctl/output/output.hpp"
#include "hosts/zanctl/station/station_options.hpp"
#include "platform/environment.hpp"

namespace zanctl {

using lumodevice::platform::Environment;

/// What a command line asks for: a command, and the station that it runs on.
struct CommandLine {
  StationOptions options;
  const Command* command = nullptr;
  Run run;
};

/// Reads a command line (without the program's name) and the variables that stand in for options.
/// None when only help or the version was asked for, which is then printed on `output`. Throws
/// WrongCommandLine.
[[nodiscard]] std::optional<CommandLine> parseCommandLine(const std::vector<std::string>& words,
                                                          const Environment& environment,
                                                          Output& output);

}  // namespace zanctl
