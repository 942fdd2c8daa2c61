#include "hosts/zanctl/commands.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <limits>
#include <system_error>

#include "hosts/zanctl/connection.hpp"
#include "hosts/zanctl/control_table.hpp"
#include "hosts/zanctl/demo.hpp"
#include "hosts/zanctl/script.hpp"
#include "hosts/zanctl/station.hpp"

namespace zanctl {

namespace {

ExitStatus runScript(Station& station, const Options& options) {
  Script script(station.component(), station.loop(), station.output());
  const std::string file = options.arguments.empty() ? "-" : options.arguments[0];
  if (file == "-") {
    return script.run(station.streams().input, file, station.errors());
  }
  std::ifstream lines(file);
  if (!lines) {
    throw WrongCommandLine("cannot read " + file + ": " + std::generic_category().message(errno));
  }
  return script.run(lines, file, station.errors());
}

constexpr std::array kCommands = {
    Command{.name = "run",
            .arguments = "[FILE]",
            .help = "Run a host script (standard input when FILE is absent or -)",
            .run = runScript},
    Command{.name = "connect",
            .help = "Search for an instrument; print link, identity and channels",
            .run = runConnect},
    Command{.name = "send",
            .arguments = "COMMAND...",
            .help = "Connect, send each command and print the answer of each query",
            .run = runSend},
    Command{.name = "readings", .help = "Print the readings of each channel (not available yet)"},
    Command{.name = "capture", .help = "Save the instrument's screen (not available yet)"},
    Command{.name = "files", .help = "Save and restore memory files (not available yet)"},
    Command{.name = "controls",
            .arguments = "[NAME]",
            .help = "Print a table of every control of the panel, or of one",
            .run = runControls},
    Command{.name = "demo",
            .help = "Take a guided tour of the simulated instrument",
            .run = runDemo,
            .alwaysSimulated = true},
};

bool isRepeated(std::string_view arguments) {
  return arguments.ends_with("...");
}

}  // namespace

std::size_t Command::most() const {
  if (isRepeated(arguments)) {
    return std::numeric_limits<std::size_t>::max();
  }
  return arguments.empty() ? 0 : 1;
}

std::size_t Command::least() const {
  return arguments.empty() || arguments.starts_with('[') ? 0 : 1;
}

std::span<const Command> commands() {
  return kCommands;
}

}  // namespace zanctl
