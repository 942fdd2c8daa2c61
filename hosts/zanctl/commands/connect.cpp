#include <memory>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"

namespace zanctl {

namespace {

ExitStatus connect(Station& station, bool json) {
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  if (json) {
    station.output().line(jsonLine(connectionObject(station)));
  } else {
    printConnection(station);
  }
  return kDone;
}

Run prepare(CLI::App& parser) {
  const auto json = std::make_shared<bool>(false);
  addJson(parser, *json);
  return [json](Station& station) { return connect(station, *json); };
}

}  // namespace

const Command kConnect = {
    .name = "connect",
    .summary = "Search for an instrument; print link, identity and channels",
    .usage = "[--json]",
    .prepare = prepare,
    .watching = Watching::All,
};

}  // namespace zanctl
