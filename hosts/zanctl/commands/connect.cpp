#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"

namespace zanctl {

namespace {

ExitStatus connect(Station& station) {
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  printConnection(station);
  return kDone;
}

}  // namespace

const Command kConnect = {
    .name = "connect",
    .summary = "Search for an instrument; print link, identity and channels",
    .usage = "",
    .prepare = [](CLI::App& /*parser*/) -> Run { return connect; },
};

}  // namespace zanctl
