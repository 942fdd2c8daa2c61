#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/commands/limits.hpp"
#include "hosts/zanctl/commands/load_off.hpp"
#include "hosts/zanctl/commands/return_of_link.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/json_line.hpp"
#include "hosts/zanctl/output/table.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/controls.hpp"

namespace zanctl {

namespace {

namespace text = lumodevice::text;
using lumodevice::toolkit::ComboBox;

/// A channel's number is one digit on the wire.
constexpr int kLastChannel = 9;
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

/// What a channel is asked for, and what it is called in a table and in a file.
struct Reading {
  std::string_view query;
  std::string_view heading;
  std::string_view column;
};
constexpr auto kReadings = std::to_array<Reading>({{":FETC:VOLT?", "Voltage(V)", "voltage_V"},
                                                   {":FETC:CURR?", "Current(A)", "current_A"},
                                                   {":FETC:POW?", "Power(W)", "power_W"},
                                                   {":LOAD?", "Load", "load"}});
constexpr std::size_t kVolts = 0;
constexpr std::size_t kWatts = 2;
constexpr std::size_t kLoad = 3;
constexpr std::chrono::milliseconds kLateAnswers{1000};
/// Queries in a row without an answer, after which the instrument counts as lost.
constexpr int kMostSilent = 12;

/// An entry of the channel list: "CH3-2040" is number 3, name "CH3-2040".
struct Channel {
  int number;
  std::string name;
};

Channel channelOf(std::string_view name) {
  const double number = text::Val(name.substr(std::min<std::size_t>(name.size(), 2)));
  return {static_cast<int>(std::clamp(number, 0.0, 1e6)), std::string(name)};
}

/// Cuts off what no command can select, and tells it; whether there was any.
bool passOver(Station& station, std::vector<Channel>& channels) {
  std::string names;
  std::erase_if(channels, [&](const Channel& channel) {
    const bool beyond = channel.number > kLastChannel;
    names += beyond ? (names.empty() ? "" : ", ") + channel.name : "";
    return beyond;
  });
  if (!names.empty()) {
    station.fail(names + " cannot be read: a channel is selected by one digit");
  }
  return !names.empty();
}

std::vector<Channel> channelsToRead(Station& station, const Options& options) {
  const auto& list = station.component().surface().get<ComboBox>("cmbChannel");
  std::vector<Channel> channels;
  for (int i = 0; i < list.listCount(); ++i) {
    const Channel channel = channelOf(list.list(i));
    if (options.channel == 0 || channel.number == options.channel) {
      channels.push_back(channel);
    }
  }
  return channels;
}

/// ISO 8601 with milliseconds and the offset from UTC.
std::string timeStamp(const lumodevice::io::LocalTime& time) {
  std::array<char, 64> stamp{};
  const int offset = std::abs(time.utcOffset);
  (void)std::snprintf(stamp.data(), stamp.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03d%c%02d:%02d",
                      time.year, time.month, time.day, time.hour, time.minute, time.second,
                      time.millisecond, time.utcOffset < 0 ? '-' : '+', offset / 60, offset % 60);
  return stamp.data();
}

/// The one number that an answer is; none for an answer that did not come, was garbled, or is two
/// that ran together: a table is no place for it.
std::optional<std::string> numberIn(const std::string& answer) {
  const std::string number = text::Trim(answer);
  const bool plain = number.find_first_not_of("0123456789.+-eE") == std::string::npos;
  return plain && text::isNumericText(number) ? std::optional(number) : std::nullopt;
}

/// A field of comma-separated values: in quotes where it would not be one else.
std::string quotedIfNeeded(const std::string& field) {
  if (field.find_first_of("\",\r\n") == std::string::npos) {
    return field;
  }
  std::string quoted = "\"";
  for (const char letter : field) {
    quoted += letter == '"' ? "\"\"" : std::string{letter};
  }
  return quoted + '"';
}

std::string joined(const Row& row) {
  std::string line;
  for (const std::string& field : row) {
    line += (line.empty() ? "" : ",") + quotedIfNeeded(field);
  }
  return line;
}

/// The answers of a channel as `--json` prints them: numbers under the names of the columns, the
/// load's state as a truth value, null for an answer that is none.
std::string jsonOf(const std::string& stamp, const Channel& channel, const Row& answers) {
  Json object = {{"time", stamp}, {"channel", wireText(channel.name)}};
  for (std::size_t i = 0; i < kReadings.size(); ++i) {
    const Json number = wireNumber(answers[i]);
    object[std::string(kReadings[i].column)] =
        i == kLoad && !number.is_null() ? Json(number != 0) : number;
  }
  return jsonLine(object);
}

void printCsvHeader(Output& output) {
  Row header{"time", "channel"};
  for (const Reading& reading : kReadings) {
    header.emplace_back(reading.column);
  }
  output.line(joined(header));
}

std::optional<double> valueOf(const std::string& field) {
  return field.empty() ? std::nullopt : std::optional(text::Val(field));
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
        limits_(options.limits, station.loop().now()) {}

  /// In the end the channel that the panel shows is selected again.
  ExitStatus run() {
    const int shown =
        channelOf(station_.component().surface().get<ComboBox>("cmbChannel").text()).number;
    selected_ = shown;
    select(channels_.front().number);
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
      if (isLost() && !regain()) {
        return kFailed;
      }
    }
    select(shown);
    return complete_ ? kDone : kFailed;
  }

 private:
  void waitUntil(std::chrono::nanoseconds due) {
    if (due > station_.loop().now()) {
      station_.loop().runFor(due - station_.loop().now());
    }
  }

  /// Nothing is sent where no channel is meant, or one beyond the ninth.
  void select(int channel) {
    if (selected_ != channel && channel >= 1 && channel <= kLastChannel) {
      station_.component().SendCmd(":CHAN " + std::to_string(channel));
      selected_ = channel;
    }
  }

  [[nodiscard]] bool isLost() const {
    return !station_.component().isConnected() || silent_ >= kMostSilent;
  }

  /// One round over the channels; false when an answer did not come.
  bool readRound() {
    bool complete = true;
    std::vector<Row> table{{"Channel"}};
    for (const Reading& reading : kReadings) {
      table[0].emplace_back(reading.heading);
    }
    for (const Channel& channel : channels_) {
      select(channel.number);
      const std::string stamp = timeStamp(station_.wallClock().now());
      Row row = readChannel(channel, complete);
      if (isLost()) {
        break;  // an empty line would be no reading
      }
      if (options_.json) {
        station_.output().line(jsonOf(stamp, channel, row));
      }
      row.insert(row.begin(), escaped(channel.name));
      if (options_.csv) {
        row.insert(row.begin(), stamp);
        station_.output().line(joined(row));
      } else if (!options_.json) {
        table.push_back(std::move(row));
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

  /// Asks the selected channel; an empty field stands for an answer that is none.
  Row readChannel(const Channel& channel, bool& complete) {
    Row row;
    for (std::size_t i = 0; i < kReadings.size() && !isLost(); ++i) {
      station_.component().SendCmd(kReadings[i].query);
      const std::string answer = station_.component().ResultStr();
      silent_ = answer.empty() ? silent_ + 1 : 0;
      std::string field;
      if (const auto number = numberIn(answer)) {
        field = *number;
      } else {
        complete = false;
        // What is late must not arrive as the answer of the next query.
        station_.loop().runFor(kLateAnswers);
      }
      row.push_back(std::move(field));
    }
    row.resize(kReadings.size());
    hold(channel, row);
    if (!options_.csv && !options_.json && !row[kLoad].empty()) {
      row[kLoad] = text::Val(row[kLoad]) == 0 ? "off" : "on";
    }
    return row;
  }

  void hold(const Channel& channel, const Row& row) {
    if (!options_.limits.any()) {
      return;
    }
    const auto load = valueOf(row[kLoad]);
    reached_ = limits_.take(channel.name,
                            {.volts = valueOf(row[kVolts]),
                             .watts = valueOf(row[kWatts]),
                             .on = load ? std::optional(*load != 0) : std::nullopt},
                            station_.loop().now());
  }

  /// True when the same instrument is back; the gap is marked in the output.
  bool regain() {
    if (silent_ >= kMostSilent) {
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
    silent_ = 0;
    selected_ = 0;
    return true;
  }

  void mark(const std::string& what) {
    const std::string stamp = timeStamp(station_.wallClock().now());
    if (options_.csv) {
      Row row{stamp, what};
      row.resize(2 + kReadings.size());
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
  LimitWatch limits_;
  std::optional<std::string> reached_;
  int selected_ = 0;
  int silent_ = 0;
};

ExitStatus takeReadings(Station& station, const Options& options) {
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  std::vector<Channel> channels = channelsToRead(station, options);
  const bool some = passOver(station, channels);
  if (channels.empty() && some) {
    return kFailed;
  }
  if (channels.empty()) {
    station.fail(options.channel == 0
                     ? "the instrument lists no channels"
                     : "the instrument has no channel " + std::to_string(options.channel) +
                           " (see zanctl connect)");
    return kFailed;
  }
  if (options.csv) {
    printCsvHeader(station.output());
  }
  return Rounds(station, options, std::move(channels), !some).run();
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
