#include "hosts/zanctl/program.hpp"

#include <cerrno>
#include <memory>
#include <system_error>

namespace zanctl {

namespace {

ExitStatus runCommand(const CommandLine& line, const Streams& streams) {
  std::shared_ptr<const Output> trace;
  std::shared_ptr<const bool> recordingFailed;
  ExitStatus status = kDone;
  {
    Station station(line.options, streams);
    trace = station.traceFile();
    recordingFailed = station.recordingFailed();
    status = line.run(station);
    if (status == kDone && !station.links().usedRightly()) {
      status = kFailed;
    }
  }
  if (*recordingFailed && status == kDone) {
    status = kFailed;
  }
  // The end of the links was the last that was traced.
  if (trace && trace->closed()) {
    streams.errors.line("zanctl: cannot write the trace to " + line.options.trace.value_or("") +
                        ": " + std::generic_category().message(trace->error()));
    status = status == kDone ? kFailed : status;
  }
  return status;
}

/// A reader that has seen enough is nothing to speak of; anything else is.
ExitStatus outputClosed(const Streams& streams) {
  if (streams.output.error() == EPIPE) {
    return kOutputClosed;
  }
  streams.errors.line("zanctl: cannot write the output: " +
                      std::generic_category().message(streams.output.error()));
  return kFailed;
}

}  // namespace

ExitStatus runProgram(const std::vector<std::string>& words, const Environment& environment,
                      const Streams& streams) {
  ExitStatus status = kDone;
  try {
    auto line = parseCommandLine(words, environment, streams.output);
    if (line) {
      status = runCommand(*line, streams);
    }
  } catch (const WrongCommandLine& wrong) {
    streams.errors.line("zanctl: " + std::string(wrong.what()) + " (see zanctl --help)");
    status = kWrongCommandLine;
  } catch (const Unusable& named) {
    streams.errors.line("zanctl: " + std::string(named.what()));
    status = kUnusable;
  }
  return streams.output.closed() ? outputClosed(streams) : status;
}

}  // namespace zanctl
