#include <CLI/App.hpp>
#include <fstream>
#include <memory>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/script/help.hpp"
#include "hosts/zanctl/script/script.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

namespace {

ExitStatus runScript(Station& station, const std::string& file) {
  Script script(station.component(), station.loop(), station.output());
  if (file == kStandardStream) {
    return script.run(station.streams().input, file, station.errors());
  }
  std::ifstream lines = openToRead(file);
  return script.run(lines, file, station.errors());
}

Run prepare(CLI::App& parser) {
  const auto file = std::make_shared<std::optional<std::string>>();
  addArgument(parser, "FILE", *file, "The script; standard input when it is absent or -");
  parser.footer(scriptHelp);
  return [file](Station& station) {
    return runScript(station, file->value_or(std::string(kStandardStream)));
  };
}

}  // namespace

const Command kRun = {
    .name = "run", .summary = "Run a host script", .usage = "[FILE]", .prepare = prepare};

}  // namespace zanctl
