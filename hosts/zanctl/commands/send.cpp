#include <CLI/App.hpp>
#include <memory>
#include <string>
#include <vector>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/commands/error_queue.hpp"
#include "hosts/zanctl/commands/load_off.hpp"
#include "hosts/zanctl/output/escape.hpp"

namespace zanctl {

namespace {

struct Options {
  std::vector<std::string> commands;
  bool check = false;
};

/// Says what the instrument has against the command.
bool accepted(Station& station, const std::string& command) {
  const ErrorQueue queue = takeErrors(station.component());
  for (const std::string& error : queue.errors) {
    station.errors().line("zanctl: " + escaped(command) + ": " + escaped(error));
  }
  if (!queue.answered) {
    station.errors().line("zanctl: the instrument does not tell its errors");
  }
  return queue.answered && queue.errors.empty();
}

/// With --check, nothing follows a command that the instrument did not take.
ExitStatus send(Station& station, const Options& options, lumodevice::Panel panel) {
  if (!connectOrExplain(station, panel)) {
    return kFailed;
  }
  if (options.check) {
    // What was wrong before is not to be taken for an error of these commands.
    (void)takeErrors(station.component());
  }
  bool answered = true;
  for (const std::string& command : options.commands) {
    answered = sendAndPrint(station, command) && answered;
    if (station.output().closed()) {
      return kOutputClosed;
    }
    if (lostLink(station) || (options.check && !accepted(station, command))) {
      return kFailed;
    }
  }
  return answered ? kDone : kFailed;
}

Run prepare(CLI::App& parser) {
  const auto options = std::make_shared<Options>();
  addArgument(parser, "COMMAND", options->commands,
              "A command of the instrument; quote it for the shell");
  parser.add_flag("--check", options->check,
                  "Ask the error queue after each command; end with an entry, in status 1");
  const auto off = addOffAtEnd(parser);
  return [options, off](Station& station) {
    if (!*off) {
      return send(station, *options, lumodevice::Panel::Left);
    }
    return switchingOff(station, 0,
                        [&] { return send(station, *options, lumodevice::Panel::ReadBack); });
  };
}

}  // namespace

const Command kSend = {
    .name = "send",
    .summary = "Connect, send commands and print the answer of each query",
    .usage = "[--check] [--off-at-end] COMMAND...",
    .prepare = prepare,
    .watching = Watching::Connect,
};

}  // namespace zanctl
