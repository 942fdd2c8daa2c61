#include "hosts/zanctl/program.hpp"

#include <cerrno>
#include <system_error>

#include "hosts/zanctl/commands.hpp"

namespace zanctl {

namespace {

ExitStatus runCommand(const Options& options, const Streams& streams) {
  if (options.command->run == nullptr) {
    throw NotAvailable(std::string(options.command->name) + " is not available yet");
  }
  Station station(options, streams);
  const ExitStatus status = options.command->run(station, options);
  return status == kDone && !station.links().usedRightly() ? kFailed : status;
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
    const auto options = parseOptions(words, environment, streams.output);
    if (options) {
      status = runCommand(*options, streams);
    }
  } catch (const WrongCommandLine& wrong) {
    streams.errors.line("zanctl: " + std::string(wrong.what()) + " (see zanctl --help)");
    status = kWrongCommandLine;
  } catch (const Unusable& named) {
    streams.errors.line("zanctl: " + std::string(named.what()));
    status = kUnusable;
  } catch (const NotAvailable& missing) {
    streams.errors.line("zanctl: " + std::string(missing.what()));
    status = kNotAvailable;
  }
  return streams.output.closed() ? outputClosed(streams) : status;
}

}  // namespace zanctl
