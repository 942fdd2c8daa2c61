#include <CLI/CLI.hpp>
#include <chrono>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/channel_reader.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/commands/limits.hpp"
#include "hosts/zanctl/commands/load_off.hpp"
#include "hosts/zanctl/commands/return_of_link.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/json_line.hpp"
#include "hosts/zanctl/output/table.hpp"
#include "recordings/text_lines.hpp"

namespace zanctl {

namespace {

namespace recordings = lumodevice::recordings;

/// A day, in milliseconds.
constexpr int kLongestPeriod = 24 * 60 * 60 * 1000;

struct Options {
  int channel = 0;  ///< 0: all
  /// Rounds; 0: until the program is ended. None: 1, or until a limit is reached.
  std::optional<int> count;
  int every = 1000;  ///< milliseconds from the start of one round to that of the next
  bool csv = false;
  bool json = false;
  bool reconnect = false;
  Limits limits;
  bool thenOff = false;
};

std::string joined(const Row& fields) {
  std::string line;
  for (const std::string& field : fields) {
    line += (line.empty() ? "" : ",") + recordings::csvField(field);
  }
  return line;
}

/// The answers of a channel as `--json` prints them: numbers under the names of the columns, the
/// load's state as a truth value, null for an answer that is none.
std::string jsonOf(const std::string& stamp, const Channel& channel,
                   const ChannelReader::Answers& answers) {
  Json object = {{"time", stamp}, {"channel", wireText(channel.name)}};
  addReadings(object, answers);
  return jsonLine(object);
}

void printCsvHeader(Output& output) {
  Row header{"time", "channel"};
  for (const ReadingColumn& reading : kReadingColumns) {
    header.emplace_back(reading.column);
  }
  output.line(joined(header));
}

/// The rounds of one command: each channel is selected by its number alone and asked for its
/// readings.
class Rounds {
 public:
  /// `complete`: nothing is left out.
  Rounds(Station& station, const Options& options, std::vector<Channel> channels, bool complete)
      : station_(station),
        options_(options),
        channels_(std::move(channels)),
        complete_(complete),
        reader_(station),
        limits_(options.limits, station.loop().now()) {}

  /// In the end the channel that the panel shows is selected again.
  ExitStatus run() {
    reader_.select(channels_.front().number);
    const auto begin = station_.loop().now();
    const int count = options_.count.value_or(options_.limits.any() ? 0 : 1);
    for (int round = 0; count == 0 || round < count; ++round) {
      waitUntil(begin + std::chrono::milliseconds(options_.every) * round);
      complete_ = readRound() && complete_;
      if (station_.output().closed()) {
        return kOutputClosed;
      }
      if (reached_) {
        station_.errors().line("zanctl: readings end: " + escaped(*reached_));
        break;
      }
      if (reader_.isLost() && !regain()) {
        return kFailed;
      }
    }
    reader_.select(reader_.shown());
    return complete_ ? kDone : kFailed;
  }

 private:
  void waitUntil(std::chrono::nanoseconds due) {
    if (due > station_.loop().now()) {
      station_.loop().runFor(due - station_.loop().now());
    }
  }

  /// One round over the channels; false when an answer did not come.
  bool readRound() {
    bool complete = true;
    std::vector<Row> table{{"Channel"}};
    for (const ReadingColumn& reading : kReadingColumns) {
      table[0].emplace_back(reading.heading);
    }
    for (const Channel& channel : channels_) {
      reader_.select(channel.number);
      const std::string stamp = recordings::timeStamp(station_.wallClock().now());
      const ChannelReader::Answers answers = reader_.read(channel);
      complete = complete && ChannelReader::isComplete(answers);
      hold(channel, answers);
      if (reader_.isLost()) {
        break;  // an empty line would be no reading
      }
      Row fields{escaped(channel.name)};
      fields.insert(fields.end(), answers.begin(), answers.end());
      if (options_.json) {
        station_.output().line(jsonOf(stamp, channel, answers));
      } else if (options_.csv) {
        fields.insert(fields.begin(), stamp);
        station_.output().line(joined(fields));
      } else {
        if (const auto load = ChannelReader::valueOf(answers[kLoad])) {
          fields.back() = *load == 0 ? "off" : "on";
        }
        table.push_back(std::move(fields));
      }
      if (station_.output().closed() || reached_) {
        break;
      }
    }
    if (table.size() > 1) {
      station_.output().write(alignedTable(table));
    }
    return complete;
  }

  void hold(const Channel& channel, const ChannelReader::Answers& answers) {
    if (!options_.limits.any()) {
      return;
    }
    reached_ = limits_.take(channel.name, measuredIn(answers), station_.loop().now());
  }

  /// True when the same instrument is back; the gap is marked in the output.
  bool regain() {
    if (reader_.isSilent()) {
      station_.noteSilence();
    }
    mark("link lost");
    if (!options_.reconnect) {
      station_.fail(escaped(station_.lossText()));
      return false;
    }
    const bool back = awaitReturn(station_, [this] {
      reached_ = limits_.expired(station_.loop().now());
      return reached_.has_value();
    });
    if (!back) {
      station_.fail("readings end: " + escaped(reached_.value_or("")));
      return false;
    }
    mark("link regained");
    reader_.regained();
    return true;
  }

  void mark(const std::string& what) {
    const std::string stamp = recordings::timeStamp(station_.wallClock().now());
    if (options_.csv) {
      Row row{stamp, what};
      row.resize(2 + kReadingColumns.size());
      station_.output().line(joined(row));
    } else if (options_.json) {
      station_.output().line(jsonLine({{"time", stamp}, {"event", what}}));
    } else {
      station_.output().line("-- " + what + " " + stamp + " --");
    }
  }

  Station& station_;
  const Options& options_;
  std::vector<Channel> channels_;
  bool complete_;
  ChannelReader reader_;
  LimitWatch limits_;
  std::optional<std::string> reached_;
};

ExitStatus takeReadings(Station& station, const Options& options) {
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  ChannelsToRead read = channelsToRead(station, options.channel);
  if (read.channels.empty()) {
    return kFailed;
  }
  if (options.csv) {
    printCsvHeader(station.output());
  }
  return Rounds(station, options, std::move(read.channels), read.complete).run();
}

/// Whoever switches off at the end operates then, and then alone.
ExitStatus run(Station& station, const Options& options, bool offAtEnd) {
  if (!offAtEnd && !options.thenOff) {
    return takeReadings(station, options);
  }
  return switchingOff(station, options.channel, [&] { return takeReadings(station, options); });
}

Run prepare(CLI::App& parser) {
  const auto options = std::make_shared<Options>();
  parser.add_option("--channel", options->channel, "This channel only")
      ->type_name("N")
      ->check(CLI::Range(1, kLastChannel));
  parser
      .add_option("--count", options->count,
                  "Rounds to take, 1 when not given and no limit is; 0 goes on for ever")
      ->type_name("N")
      ->check(CLI::Range(0, std::numeric_limits<int>::max()));
  parser.add_option("--every", options->every, "From one round to the next, 1000 when not given")
      ->type_name("MS")
      ->check(CLI::Range(0, kLongestPeriod));
  CLI::Option* const csv =
      parser.add_flag("--csv", options->csv, "Comma-separated values with time stamps");
  addJson(parser, options->json)->excludes(csv);
  parser.add_flag("--reconnect", options->reconnect,
                  "Wait for an instrument that was lost, and go on");
  addLimits(parser, options->limits);
  parser
      .add_option_function<std::string>(
          "--then",
          [options](const std::string& act) {
            if (act != "off" && act != "leave") {
              throw WrongCommandLine("--then takes off or leave, not " + act);
            }
            options->thenOff = act == "off";
          },
          "off: switch the load off at the end, as --off-at-end; leave it, when not given")
      ->type_name("ACT");
  const auto off = addOffAtEnd(parser);
  return [options, off](Station& station) { return run(station, *options, *off); };
}

}  // namespace

const Command kReadings = {
    .name = "readings",
    .summary = "Connect and print voltage, current, power and load of each channel",
    .usage =
        "[--channel N] [--count N] [--every MS] [--csv] [--json] [--reconnect] [--stop-below "
        "VOLTS] "
        "[--stop-after TIME] [--stop-energy ENERGY] [--then ACT] [--off-at-end]",
    .prepare = prepare,
    .watching = Watching::All,
};

}  // namespace zanctl
