#include "hosts/zanctl/demo.hpp"

#include <array>

#include "hosts/zanctl/connection.hpp"
#include "lumodevice/text/text.hpp"

namespace zanctl {

namespace {

/// What is told before a command is sent; an empty text goes on from the step before.
struct Step {
  std::string_view told;
  std::string_view command;
};

constexpr std::array kSteps = {
    Step{"A command without a question mark is sent and nothing is read. This one selects channel "
         "2:",
         ":CHAN 2"},
    Step{"A question is sent the same way, and its answer stands in ResultStr:", ":CHAN?"},
    Step{"Long and short forms, upper and lower case mean the same:", "chan?"},
    Step{"Each part of the mainframe, empty slots as 0:", "*RDT?"},
    Step{"The instrument keeps what it did not understand in its error queue:", ":NONSENSE 1"},
    Step{"", ":SYST:ERR?"},
    Step{"... and the queue is empty again:", ":SYST:ERR?"},
};

constexpr std::string_view kOpening =
    "A tour of the simulated instrument. Nothing real is touched.\n"
    "\n"
    "The component searches the chosen link, opens the instrument that it finds and lists its\n"
    "channels; > marks the selected one.\n"
    "\n";

constexpr std::string_view kClosing =
    "\n"
    "That was all through the panel's own controls. Go on with:\n"
    "  zanctl --simulate connect           the same search on its own\n"
    "  zanctl --simulate send '*IDN?'      one question\n"
    "  zanctl --simulate --trace - connect what goes over the wire\n"
    "  zanctl controls                     every control of the panel\n"
    "  zanctl run --help                   how to write a script of your own\n";

}  // namespace

ExitStatus runDemo(Station& station, const Options& options) {
  Output& output = station.output();
  output.write(kOpening);
  if (!connectOrExplain(station, options)) {
    return kFailed;
  }
  printConnection(station, options);
  for (const Step& step : kSteps) {
    if (!step.told.empty()) {
      output.line("");
      output.line(step.told);
    }
    output.line(std::string("  ").append(step.command));
    if (!sendAndPrint(station, std::string(step.command))) {
      return kFailed;
    }
    if (output.closed()) {
      return kOutputClosed;
    }
  }
  output.write(kClosing);
  return kDone;
}

}  // namespace zanctl
