#include "hosts/zanctl/commands/long_log.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

#include "hosts/zanctl/commands/channel_reader.hpp"
#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/commands/load_off.hpp"
#include "hosts/zanctl/commands/return_of_link.hpp"
#include "hosts/zanctl/commands/until.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/json_line.hpp"
#include "hosts/zanctl/station/interruption.hpp"
#include "recordings/text_lines.hpp"

namespace zanctl {

namespace {

namespace recordings = lumodevice::recordings;
using lumodevice::io::LocalTime;
using Time = std::chrono::nanoseconds;

constexpr std::string_view kCsvHead =
    "time,elapsed_s,channel,voltage_V,current_A,power_W,load,energy_Wh,event,note\n";
/// Between two rounds somebody looks that often whether anything is to be done.
constexpr std::chrono::seconds kLook{1};
/// What the clock may differ by without having been set.
constexpr std::chrono::milliseconds kClockStep{500};

std::string seconds(Time time, const char* format = "%.3f") {
  std::array<char, 40> text{};
  (void)std::snprintf(text.data(), text.size(), format,
                      std::chrono::duration<double>(time).count());
  return text.data();
}

std::string offsetText(int minutes) {
  std::array<char, 24> text{};
  (void)std::snprintf(text.data(), text.size(), "%c%02d:%02d", minutes < 0 ? '-' : '+',
                      std::abs(minutes) / 60, std::abs(minutes) % 60);
  return text.data();
}

/// The rows of one log, in the form that was asked for.
class Rows {
 public:
  Rows(Station& station, const LogOptions& options)
      : station_(station),
        json_(options.json),
        begin_(station.loop().now()),
        file_(options.file, options.turning, options.json ? "" : std::string(kCsvHead),
              station.errors()) {}

  [[nodiscard]] LogFile& file() { return file_; }

  /// Taken at `at`, of the loop's time, and at `time`.
  void reading(Time at, const LocalTime& time, const Channel& channel,
               const ChannelReader::Answers& answers, double wattHours) {
    const std::string stamp = recordings::timeStamp(time);
    const std::string elapsed = seconds(at - begin_);
    if (json_) {
      Json object = {
          {"time", stamp}, {"elapsed_s", wireNumber(elapsed)}, {"channel", wireText(channel.name)}};
      addReadings(object, answers);
      object["energy_Wh"] = wireNumber(recordings::csvTotal(wattHours));
      file_.write(jsonLine(object) + '\n', time);
      return;
    }
    std::string row = stamp + ',' + elapsed + ',' + recordings::csvField(escaped(channel.name));
    for (const std::string& answer : answers) {
      row += ',' + answer;
    }
    file_.write(row + ',' + recordings::csvTotal(wattHours) + ",,\n", time);
  }

  void event(std::string_view what, const std::string& note) {
    event(station_.loop().now(), station_.wallClock().now(), what, note);
  }
  void event(Time at, const LocalTime& time, std::string_view what, const std::string& note) {
    const std::string stamp = recordings::timeStamp(time);
    const std::string elapsed = seconds(at - begin_);
    if (json_) {
      file_.write(jsonLine({{"time", stamp},
                            {"elapsed_s", wireNumber(elapsed)},
                            {"event", what},
                            {"note", wireText(note)}}) +
                      '\n',
                  time);
      return;
    }
    file_.write(stamp + ',' + elapsed + ",,,,,,," + recordings::csvField(what) + ',' +
                    recordings::csvField(note) + '\n',
                time);
  }

 private:
  Station& station_;
  bool json_;
  Time begin_;
  LogFile file_;
};

/// Compares the clock of the date with that of the loop, which nobody sets.
class ClockWatch {
 public:
  ClockWatch(Rows& rows, const LocalTime& time, Time now)
      : rows_(rows), difference_(differenceOf(time, now)), utcOffset_(time.utcOffset) {}

  void look(const LocalTime& time, Time now) {
    const Time difference = differenceOf(time, now);
    const Time step = difference - difference_;
    if (std::chrono::abs(step) >= kClockStep) {
      rows_.event(now, time, "clock stepped", seconds(step, "%+.3f") + " s");
      difference_ = difference;
    }
    if (time.utcOffset != utcOffset_) {
      rows_.event(now, time, "utc offset",
                  offsetText(time.utcOffset) + " after " + offsetText(utcOffset_));
      utcOffset_ = time.utcOffset;
    }
  }

 private:
  static Time differenceOf(const LocalTime& time, Time now) {
    return recordings::momentOf(time).time_since_epoch() - now;
  }

  Rows& rows_;
  Time difference_;
  int utcOffset_;
};

/// The dead man's switch: what is not read must not draw.
class DeadMan {
 public:
  DeadMan(Station& station, const LogOptions& options, Rows& rows,
          const std::vector<Channel>& channels)
      : station_(station), options_(options), rows_(rows) {
    for (const Channel& channel : channels) {
      lastRead_.emplace(channel.number, station.loop().now());
    }
  }

  /// A whole reading of that channel has come.
  void read(const Channel& channel) {
    lastRead_.insert_or_assign(channel.number, station_.loop().now());
    if (options_.deadMan && silence() < limit()) {
      released_ = false;
      toldNoLine_ = false;
    }
  }

  /// Switches off where it is time to.
  void look() {
    if (!options_.deadMan || released_ || silence() < limit()) {
      return;
    }
    const std::string why = "no readings for " + seconds(silence(), "%.0f") + " s";
    if (!station_.component().isConnected()) {
      if (!std::exchange(toldNoLine_, true)) {
        mayBeOn_ = true;
        rows_.event("LOAD MAY STILL BE ON", why + ", no line to switch it off over");
        station_.errors().line("zanctl: THE LOAD MAY STILL BE ON: " + why +
                               ", and there is no line to switch it off over; that is done as "
                               "soon as there is");
      }
      return;
    }
    released_ = true;
    station_.errors().line("zanctl: dead man's switch: " + why + "; switching the load off");
    rows_.event("dead man", why);
    mayBeOn_ = true;
    // At once, and whether it can be confirmed or not.
    sendLoadOff(station_, options_.channel);
    mayBeOn_ = !switchLoadOff(station_, options_.channel);
    rows_.event(mayBeOn_ ? "LOAD MAY STILL BE ON" : "load off",
                mayBeOn_ ? "it could not be switched off" : "by the dead man's switch");
  }

  [[nodiscard]] bool mayBeOn() const { return mayBeOn_; }

 private:
  [[nodiscard]] Time limit() const {
    return std::chrono::duration_cast<Time>(
        std::chrono::duration<double>(options_.deadMan.value_or(0)));
  }
  [[nodiscard]] Time silence() const {
    const auto oldest =
        std::ranges::min_element(lastRead_, {}, [](const auto& entry) { return entry.second; });
    return station_.loop().now() - oldest->second;
  }

  Station& station_;
  const LogOptions& options_;
  Rows& rows_;
  std::map<int, Time> lastRead_;
  bool released_ = false;
  bool toldNoLine_ = false;
  bool mayBeOn_ = false;
};

class LongLog {
 public:
  LongLog(Station& station, const LogOptions& options, std::vector<Channel> channels)
      : station_(station),
        options_(options),
        channels_(std::move(channels)),
        rows_(station, options),
        reader_(station),
        limits_(options.limits, station.loop().now()),
        clock_(rows_, station.wallClock().now(), station.loop().now()),
        deadMan_(station, options, rows_, channels_) {
    if (options.until) {
      until_ = untilIn(*options.until, station.wallClock().now());
    }
  }

  ExitStatus run() {
    rows_.event("begin", identity());
    try {
      takeRounds();
      reader_.select(reader_.shown());
    } catch (const Interrupted& interrupted) {
      ending_ = interrupted.signal == SIGINT ? "interrupted" : "terminated";
    }
    rows_.event("end", ending_);
    station_.errors().line("zanctl: the log ends: " + escaped(ending_));
    return endStatus();
  }

 private:
  [[nodiscard]] Time now() const { return station_.loop().now(); }

  [[nodiscard]] std::string identity() const {
    std::string text(station_.component().IDN());
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
  }

  void takeRounds() {
    const Time every = std::chrono::milliseconds(options_.every);
    const Time begin = now();
    Time::rep round = 0;
    while (!ended()) {
      const bool taken = takeRound();
      if (reader_.isLost()) {
        regain();
      }
      // What could not be taken in its time is not taken later in a rush.
      const Time::rep next = std::max(round + 1, (now() - begin + every - Time(1)) / every);
      if (const Time::rep missed = next - round - (taken ? 1 : 0); missed > 0) {
        rows_.event("gap", std::to_string(missed) + " rounds missed");
      }
      round = next;
      waitUntil(begin + every * round);
    }
  }

  /// Why the log ends is in ending_.
  bool ended() {
    lookAround();
    if (ending_.empty() && until_ && hasCome(*until_, station_.wallClock().now())) {
      ending_ = "the time has come";
    }
    if (ending_.empty()) {
      ending_ = limits_.expired(now()).value_or("");
    }
    return !ending_.empty();
  }

  /// What else there is to do than to read.
  void lookAround() {
    if (Interruption::takeHangup()) {
      rows_.file().turn();
    }
    if (rows_.file().flush()) {
      if (const std::size_t lost = rows_.file().takeLost(); lost > 0) {
        rowsLost_ = true;
        rows_.event("gap", std::to_string(lost) + " rows lost: they could not be written");
      }
    }
    clock_.look(station_.wallClock().now(), now());
    deadMan_.look();
  }

  void waitUntil(Time due) {
    while (now() < due && !ended()) {
      station_.loop().runFor(std::min<Time>(due - now(), kLook));
    }
  }

  /// False when there are not all of its rows.
  bool takeRound() {
    for (const Channel& channel : channels_) {
      reader_.select(channel.number);
      const LocalTime time = station_.wallClock().now();
      const Time at = now();
      const ChannelReader::Answers answers = reader_.read(channel);
      if (reader_.isLost()) {
        return false;
      }
      Energy& energy = energies_[channel.number];
      double added = 0;
      if (const auto watts = ChannelReader::valueOf(answers[kWatts])) {
        added = energy.add(*watts, now());
      }
      if (ChannelReader::isComplete(answers)) {
        deadMan_.read(channel);
      }
      clock_.look(time, at);
      rows_.reading(at, time, channel, answers, energy.wattHours());
      if (bridging_) {
        // Nobody has measured what a straight line over a gap has added.
        rows_.event("bridged", recordings::csvTotal(added) + " Wh by a straight line");
      }
      if (options_.limits.any() && ending_.empty()) {
        ending_ = limits_.take(channel.name, measuredIn(answers), now()).value_or("");
      }
    }
    bridging_ = false;
    return true;
  }

  void regain() {
    if (reader_.isSilent()) {
      station_.noteSilence();
    }
    const Time lost = now();
    rows_.event("link lost", station_.lossText());
    const bool back = awaitReturn(station_, [this] { return ended(); });
    if (back) {
      rows_.event("link regained", "after " + seconds(now() - lost, "%.0f") + " s");
      reader_.regained();
      bridging_ = true;
      deadMan_.look();
    }
  }

  ExitStatus endStatus() {
    if (deadMan_.mayBeOn()) {
      station_.errors().line("zanctl: THE LOAD MAY STILL BE ON");
      return kLoadMayBeOn;
    }
    if (!rows_.file().flush()) {
      station_.errors().line("zanctl: " + std::to_string(rows_.file().kept()) +
                             " rows could not be written and are lost");
      return kFailed;
    }
    return rowsLost_ ? kFailed : kDone;
  }

  Station& station_;
  const LogOptions& options_;
  std::vector<Channel> channels_;
  Rows rows_;
  ChannelReader reader_;
  LimitWatch limits_;
  ClockWatch clock_;
  DeadMan deadMan_;
  std::map<int, Energy> energies_;
  std::optional<LocalTime> until_;
  std::string ending_;
  bool bridging_ = false;
  bool rowsLost_ = false;
};

}  // namespace

ExitStatus logReadings(Station& station, const LogOptions& options) {
  const Interruption interruption(Interruption::Hangup::Noted);
  try {
    if (!connectOrExplain(station)) {
      return kFailed;
    }
    ChannelsToRead read = channelsToRead(station, options.channel);
    if (read.channels.empty()) {
      return kFailed;
    }
    return LongLog(station, options, std::move(read.channels)).run();
  } catch (const Interrupted& interrupted) {
    station.errors().line("zanctl: ended before the first reading");
    return kDone;
  }
}

}  // namespace zanctl
