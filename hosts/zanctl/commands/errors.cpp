#include <memory>
#include <string>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/commands/error_queue.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/json_line.hpp"

namespace zanctl {

namespace {

ExitStatus printErrors(Station& station, bool json) {
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  const ErrorQueue queue = takeErrors(station.component());
  for (const std::string& error : queue.errors) {
    station.output().line(json ? jsonLine(errorObject(error)) : escaped(error));
  }
  if (!queue.answered) {
    station.fail("the instrument does not tell its errors");
    return kFailed;
  }
  if (queue.errors.empty() && !json) {
    station.output().line("no errors");
  }
  return kDone;
}

Run prepare(CLI::App& parser) {
  const auto json = std::make_shared<bool>(false);
  addJson(parser, *json);
  return [json](Station& station) { return printErrors(station, *json); };
}

}  // namespace

const Command kErrors = {
    .name = "errors",
    .summary = "Connect, print the instrument's error queue and so empty it",
    .usage = "[--json]",
    .prepare = prepare,
    .watching = Watching::All,
};

}  // namespace zanctl
