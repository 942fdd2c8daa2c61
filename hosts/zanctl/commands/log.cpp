#include <CLI/CLI.hpp>
#include <limits>
#include <memory>
#include <string>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/channel_reader.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/load_off.hpp"
#include "hosts/zanctl/commands/long_log.hpp"
#include "hosts/zanctl/commands/until.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

namespace {

/// A day, in milliseconds.
constexpr int kLongestPeriod = 24 * 60 * 60 * 1000;
constexpr int kMostMegabytes = 1 << 20;

struct Given {
  LogOptions log;
  int megabytes = 0;
};

ExitStatus run(Station& station, const Given& given, bool offAtEnd) {
  if (given.log.deadMan && station.options().sendsNothing) {
    throw WrongCommandLine("--observe sends nothing, so that nothing could be switched off");
  }
  LogOptions options = given.log;
  options.turning.bytes = static_cast<std::uint64_t>(given.megabytes) << 20U;
  if (options.until && !untilIn(*options.until, station.wallClock().now())) {
    throw WrongCommandLine("--until takes 2031-04-01, 2031-04-01T06:30 or 06:30, not " +
                           *options.until);
  }
  if (!offAtEnd) {
    return logReadings(station, options);
  }
  return switchingOff(station, options.channel, [&] { return logReadings(station, options); });
}

Run prepare(CLI::App& parser) {
  const auto given = std::make_shared<Given>();
  LogOptions& log = given->log;
  addArgument(parser, "FILE", log.file,
              "The log; each of its files has the time of its first row in its name");
  addJson(parser, log.json);
  parser.add_option("--channel", log.channel, "This channel only")
      ->type_name("N")
      ->check(CLI::Range(1, kLastChannel));
  parser.add_option("--every", log.every, "From one round to the next, 1000 when not given")
      ->type_name("MS")
      ->check(CLI::Range(10, kLongestPeriod));
  parser.add_option("--rotate-size", given->megabytes, "Go on in a new file before one is larger")
      ->type_name("MB")
      ->check(CLI::Range(1, kMostMegabytes));
  parser.add_flag("--rotate-daily", log.turning.daily, "Go on in a new file with each day");
  parser
      .add_option("--until", log.until,
                  "End when the clock shows that: 2031-04-01, 2031-04-01T06:30, 06:30")
      ->type_name("WHEN");
  addLimits(parser, log.limits);
  addSeconds(parser, "--dead-man", log.deadMan,
             "Switch the load off when it cannot be read for that time, as in 60s, 5min");
  const auto off = addOffAtEnd(parser);
  return [given, off](Station& station) { return run(station, *given, *off); };
}

}  // namespace

const Command kLog = {
    .name = "log",
    .summary = "Connect and keep the readings in files, for as long as wanted",
    .usage =
        "FILE [--json] [--channel N] [--every MS] [--rotate-size MB] [--rotate-daily] "
        "[--until WHEN] [--stop-below VOLTS] [--stop-after TIME] [--stop-energy ENERGY] "
        "[--dead-man TIME] [--off-at-end]",
    .prepare = prepare,
    .watching = Watching::All,
};

}  // namespace zanctl
