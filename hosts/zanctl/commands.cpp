#include "hosts/zanctl/commands.hpp"

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "hosts/zanctl/connection.hpp"
#include "hosts/zanctl/control_table.hpp"
#include "hosts/zanctl/demo.hpp"
#include "hosts/zanctl/readings.hpp"
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
  // A folder can be opened; it is only its reading that fails.
  std::error_code unknown;
  if (!lines || std::filesystem::is_directory(file, unknown)) {
    throw Unusable("cannot read " + file + ": " +
                   std::generic_category().message(lines ? EISDIR : errno));
  }
  return script.run(lines, file, station.errors());
}

constexpr std::array kCommands = {
    Command{.name = "run",
            .help = "Run a host script",
            .argument = "FILE",
            .argumentHelp = "The script; standard input when it is absent or -",
            .count = Count::AtMostOne,
            .run = runScript},
    Command{.name = "connect",
            .help = "Search for an instrument; print link, identity and channels",
            .run = runConnect},
    Command{.name = "send",
            .help = "Connect, send commands and print the answer of each query",
            .argument = "COMMAND",
            .argumentHelp = "A command of the instrument; quote it for the shell",
            .count = Count::OneOrMore,
            .run = runSend},
    Command{.name = "readings",
            .help = "Connect and print voltage, current, power and load state of each channel",
            .run = runReadings},
    Command{.name = "capture", .help = "Save the instrument's screen (not available yet)"},
    Command{.name = "files", .help = "Save and restore memory files (not available yet)"},
    Command{.name = "controls",
            .help = "Print a table of every control of the panel, or of one",
            .argument = "NAME",
            .argumentHelp = "A control, an element of a control array, or a whole array",
            .count = Count::AtMostOne,
            .run = runControls},
    Command{.name = "demo",
            .help = "Take a guided tour of the simulated instrument",
            .run = runDemo,
            .alwaysSimulated = true},
};

}  // namespace

std::span<const Command> commands() {
  return kCommands;
}

}  // namespace zanctl
