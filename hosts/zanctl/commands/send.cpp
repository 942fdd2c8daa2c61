#include <memory>
#include <vector>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"

namespace zanctl {

namespace {

ExitStatus send(Station& station, const std::vector<std::string>& commands) {
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  bool answered = true;
  for (const std::string& command : commands) {
    answered = sendAndPrint(station, command) && answered;
    if (station.output().closed()) {
      return kOutputClosed;
    }
  }
  return answered ? kDone : kFailed;
}

Run prepare(CLI::App& parser) {
  const auto commands = std::make_shared<std::vector<std::string>>();
  addArgument(parser, "COMMAND", *commands, "A command of the instrument; quote it for the shell");
  return [commands](Station& station) { return send(station, *commands); };
}

}  // namespace

const Command kSend = {
    .name = "send",
    .summary = "Connect, send commands and print the answer of each query",
    .usage = "COMMAND...",
    .prepare = prepare,
};

}  // namespace zanctl
