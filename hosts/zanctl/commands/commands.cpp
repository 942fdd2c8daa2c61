#include "hosts/zanctl/commands/commands.hpp"

#include <array>
#include <fstream>

#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/commands/controls.hpp"
#include "hosts/zanctl/commands/demo.hpp"
#include "hosts/zanctl/commands/files.hpp"
#include "hosts/zanctl/commands/readings.hpp"
#include "hosts/zanctl/commands/screen_pictures.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/script/script.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

namespace {

ExitStatus runScript(Station& station, const Options& options) {
  Script script(station.component(), station.loop(), station.output());
  const std::string file =
      options.arguments.empty() ? std::string(kStandardStream) : options.arguments[0];
  if (file == kStandardStream) {
    return script.run(station.streams().input, file, station.errors());
  }
  std::ifstream lines = openToRead(file);
  return script.run(lines, file, station.errors());
}

constexpr std::array kCommands = {
    Command{.name = "run",
            .help = "Run a host script",
            .arguments = {{{"FILE", "The script; standard input when it is absent or -"}}},
            .run = runScript},
    Command{.name = "connect",
            .help = "Search for an instrument; print link, identity and channels",
            .run = runConnect},
    Command{.name = "send",
            .help = "Connect, send commands and print the answer of each query",
            .arguments = {{{"COMMAND", "A command of the instrument; quote it for the shell", true,
                            true}}},
            .run = runSend},
    Command{.name = "readings",
            .help = "Connect and print voltage, current, power and load state of each channel",
            .run = runReadings},
    Command{
        .name = "capture",
        .help = "Connect and save the instrument's screen",
        .arguments = {{{"FILE",
                        "Where to: a PNG for a name that ends in .png, else a Windows bitmap; - "
                        "is standard output; on drive C: when it is absent"}}},
        .run = runCapture,
        .transfers = true},
    Command{.name = "convert",
            .help = "Make a picture of a display dump, without an instrument",
            .arguments = {{{"DUMP", "The dump; - is standard input", true},
                           {"FILE", "The picture, as for capture", true}}},
            .run = runConvert},
    Command{.name = "files",
            .help = "Save and send the instrument's memory files",
            .arguments = {{{"ACTION",
                            "get saves a memory file, send restores it, list shows what lies on "
                            "drive C:",
                            true},
                           {"KIND", "sequence (only to get), system or preset"},
                           {"FILE",
                            "Where to or where from; - is a standard stream; on drive C: "
                            "when it is absent"}}},
            .run = runFiles,
            .transfers = true},
    Command{.name = "controls",
            .help = "Print a table of every control of the panel, or of one",
            .arguments = {{{"NAME", "A control, an element of a control array, or a whole array"}}},
            .run = runControls},
    Command{.name = "demo",
            .help = "Take a guided tour of the simulated instrument",
            .run = runDemo,
            .alwaysSimulated = true,
            .temporaryDrive = true,
            .transfers = true},
};

}  // namespace

std::span<const Command> commands() {
  return kCommands;
}

}  // namespace zanctl
