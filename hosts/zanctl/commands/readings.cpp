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
#include <vector>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"
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
  int channel = 0;   ///< 0: all
  int count = 1;     ///< rounds; 0: until the program is ended
  int every = 1000;  ///< milliseconds from the start of one round to that of the next
  bool csv = false;
  bool json = false;
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
constexpr std::size_t kLoad = 3;
constexpr std::chrono::milliseconds kLateAnswers{1000};

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
    station.errors().line("zanctl: " + names +
                          " cannot be read: a channel is selected by one digit");
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

/// Asks the selected channel; an empty field stands for an answer that is none.
Row readChannel(Station& station, const Options& options, bool& complete) {
  Row row;
  for (std::size_t i = 0; i < kReadings.size(); ++i) {
    station.component().SendCmd(kReadings[i].query);
    std::string field;
    if (const auto number = numberIn(station.component().ResultStr())) {
      const bool word = i == kLoad && !options.csv && !options.json;
      field = word ? (text::Val(*number) == 0 ? "off" : "on") : *number;
    } else {
      complete = false;
      // What is late must not arrive as the answer of the next query.
      station.loop().runFor(kLateAnswers);
    }
    row.push_back(std::move(field));
  }
  return row;
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

/// Nothing is sent where no channel is meant, or one beyond the ninth.
void select(Station& station, int channel, int& selected) {
  if (selected != channel && channel >= 1 && channel <= kLastChannel) {
    station.component().SendCmd(":CHAN " + std::to_string(channel));
    selected = channel;
  }
}

/// One round over the channels; false when an answer did not come.
bool readRound(Station& station, const Options& options, const std::vector<Channel>& channels,
               int& selected) {
  bool complete = true;
  std::vector<Row> table{{"Channel"}};
  for (const Reading& reading : kReadings) {
    table[0].emplace_back(reading.heading);
  }
  for (const Channel& channel : channels) {
    select(station, channel.number, selected);
    const std::string stamp = timeStamp(station.wallClock().now());
    Row row = readChannel(station, options, complete);
    if (options.json) {
      station.output().line(jsonOf(stamp, channel, row));
    }
    row.insert(row.begin(), escaped(channel.name));
    if (options.csv) {
      row.insert(row.begin(), stamp);
      station.output().line(joined(row));
    } else if (!options.json) {
      table.push_back(std::move(row));
    }
    if (station.output().closed()) {
      return complete;
    }
  }
  if (!options.csv && !options.json) {
    station.output().write(alignedTable(table));
  }
  return complete;
}

void printCsvHeader(Output& output) {
  Row header{"time", "channel"};
  for (const Reading& reading : kReadings) {
    header.emplace_back(reading.column);
  }
  output.line(joined(header));
}

/// Selects each channel by its number alone and asks for its readings; in the end the channel that
/// the panel shows is selected again.
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
    station.errors().line(options.channel == 0
                              ? "zanctl: the instrument lists no channels"
                              : "zanctl: the instrument has no channel " +
                                    std::to_string(options.channel) + " (see zanctl connect)");
    return kFailed;
  }
  if (options.csv) {
    printCsvHeader(station.output());
  }
  const int shown =
      channelOf(station.component().surface().get<ComboBox>("cmbChannel").text()).number;
  int selected = shown;
  bool complete = !some;
  select(station, channels.front().number, selected);
  const auto begin = station.loop().now();
  for (int round = 0; options.count == 0 || round < options.count; ++round) {
    const auto due = begin + std::chrono::milliseconds(options.every) * round;
    if (due > station.loop().now()) {
      station.loop().runFor(due - station.loop().now());
    }
    complete = readRound(station, options, channels, selected) && complete;
    if (station.output().closed()) {
      return kOutputClosed;
    }
  }
  select(station, shown, selected);
  return complete ? kDone : kFailed;
}

Run prepare(CLI::App& parser) {
  const auto options = std::make_shared<Options>();
  parser.add_option("--channel", options->channel, "This channel only")
      ->type_name("N")
      ->check(CLI::Range(1, kLastChannel));
  parser
      .add_option("--count", options->count, "Rounds to take, 1 when not given; 0 goes on for ever")
      ->type_name("N")
      ->check(CLI::Range(0, std::numeric_limits<int>::max()));
  parser.add_option("--every", options->every, "From one round to the next, 1000 when not given")
      ->type_name("MS")
      ->check(CLI::Range(0, kLongestPeriod));
  CLI::Option* const csv =
      parser.add_flag("--csv", options->csv, "Comma-separated values with time stamps");
  addJson(parser, options->json)->excludes(csv);
  return [options](Station& station) { return takeReadings(station, *options); };
}

}  // namespace

const Command kReadings = {
    .name = "readings",
    .summary = "Connect and print voltage, current, power and load of each channel",
    .usage = "[--channel N] [--count N] [--every MS] [--csv] [--json]",
    .prepare = prepare,
};

}  // namespace zanctl
