#include <CLI/App.hpp>
#include <memory>
#include <sstream>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/load_off.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/script/completions.hpp"
#include "hosts/zanctl/script/dialogue.hpp"
#include "hosts/zanctl/script/help.hpp"
#include "hosts/zanctl/script/script.hpp"
#include "hosts/zanctl/station/station.hpp"
#include "hosts/zanctl/terminal/line_editor.hpp"

namespace zanctl {

namespace {

/// No script comes near it.
constexpr std::size_t kMostBytes = std::size_t{16} << 20;

constexpr std::string_view kPrompt = "zan> ";

/// Lines of a terminal on which nothing can be edited.
std::optional<std::string> plainLine(Station& station) {
  station.output().write(kPrompt);
  std::string line;
  if (std::getline(station.streams().input, line)) {
    return line;
  }
  return std::nullopt;
}

ExitStatus talkAtTerminal(Station& station) {
  Script script(station.component(), station.loop(), station.output(), station.errors());
  station.output().line(
      "Type an instruction; help lists them, Tab completes, quit or Ctrl-D ends.");
  if (station.options().dumbTerminal || !LineEditor::available()) {
    return talk(script, [&] { return plainLine(station); });
  }
  LineEditor editor({.prompt = std::string(kPrompt),
                     .history = station.options().history,
                     .complete = [&](std::string_view line) {
                       return completionsOf(line, station.component().surface());
                     }});
  return talk(script, [&] { return editor.read(); });
}

ExitStatus runScript(Station& station, const std::string& file) {
  Script script(station.component(), station.loop(), station.output(), station.errors());
  if (file == kStandardStream) {
    return script.run(station.streams().input, file);
  }
  std::istringstream lines(readBytes(file, kMostBytes, station.streams().input));
  return script.run(lines, file);
}

Run prepare(CLI::App& parser) {
  const auto file = std::make_shared<std::optional<std::string>>();
  addArgument(parser, "FILE", *file,
              "The script; - is standard input. Without it instructions are typed at a prompt, "
              "or read from standard input where that is no terminal");
  parser.footer(scriptHelp);
  const auto off = addOffAtEnd(parser);
  return [file, off](Station& station) {
    const auto act = [&] {
      if (!*file && station.streams().atTerminal) {
        return talkAtTerminal(station);
      }
      return runScript(station, file->value_or(std::string(kStandardStream)));
    };
    return *off ? switchingOff(station, 0, act) : act();
  };
}

}  // namespace

const Command kRun = {.name = "run",
                      .summary = "Run a host script",
                      .usage = "[--off-at-end] [FILE]",
                      .prepare = prepare};

}  // namespace zanctl
