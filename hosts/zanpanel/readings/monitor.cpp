#include "hosts/zanpanel/readings/monitor.hpp"

#include <algorithm>
#include <charconv>
#include <utility>

#include "hosts/zanpanel/readings/answers.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace zanpanel {

namespace toolkit = lumodevice::toolkit;

namespace {

constexpr std::size_t kMostMarks = 2000;
constexpr int kMostChannels = 99;
/// Queries in one turn of the auto query.
constexpr int kQueries = 5;
/// A slow answer now and then is no lost link.
constexpr Moment kShortestSilence{3000};

/// The number in ":CHAN 3"; none in anything else.
std::optional<int> chosenChannel(std::string_view line) {
  constexpr std::string_view kCommand = ":CHAN ";
  if (!line.starts_with(kCommand)) {
    return std::nullopt;
  }
  line.remove_prefix(kCommand.size());
  int number = 0;
  const auto read = std::from_chars(line.data(), line.data() + line.size(), number);
  return read.ec == std::errc() && number > 0 ? std::optional(number) : std::nullopt;
}

}  // namespace

Monitor::Monitor(lumodevice::ZANCtrl& load, toolkit::EventLoop& loop) : load_(load), loop_(loop) {
  reading_ = load_.observeReadings([this](const lumodevice::Reading& reading) { take(reading); });
  watching_ =
      load_.surface().observe([this](const toolkit::Control& control, toolkit::Property property,
                                     int /*item*/) { changed(control, property); });
}

Moment Monitor::now() const {
  return std::chrono::duration_cast<Moment>(loop_.now());
}

Moment Monitor::rotation() const {
  return Moment(kQueries * load_.surface().get<toolkit::Timer>("Timer1").interval());
}

ChannelRecord& Monitor::record(const std::string& channel) {
  return records_.try_emplace(channel, longestAge()).first->second;
}

void Monitor::sent(std::string_view line) {
  if (const auto number = chosenChannel(line)) {
    chooseChannel(*number);
  }
  if (ChannelRecord* const channel = current()) {
    channel->load.sent(line);
  }
  channelAsked_ = line == ":CHAN?\n";
}

void Monitor::received(std::string_view bytes) {
  if (std::exchange(channelAsked_, false) && bytes.ends_with('\n')) {
    const auto number = numberIn(bytes);
    if (number && *number >= 1 && *number <= kMostChannels) {
      chooseChannel(static_cast<int>(*number));
    }
  }
}

/// By the name in the panel's list, where it is there.
void Monitor::chooseChannel(int number) {
  std::string name = "CH" + std::to_string(number);
  const auto& list = load_.surface().get<toolkit::ComboBox>("cmbChannel");
  for (int i = 0; i < list.listCount(); ++i) {
    if (list.list(i) == name || list.list(i).starts_with(name + '-')) {
      name = list.list(i);
      break;
    }
  }
  if (name != channel_) {
    leave();
    channel_ = name;
    channelChanged.tell();
  }
}

/// What comes next of this channel has nothing to do with what was.
void Monitor::leave() {
  if (ChannelRecord* const channel = current()) {
    channel->counters.pause();
    channel->load.forget();
    channel->volts.part();
    channel->amperes.part();
    channel->watts.part();
  }
}

void Monitor::take(const lumodevice::Reading& reading) {
  heard_ = now();
  if (std::exchange(linkLost_, false)) {
    mark(Mark::Kind::LinkBack, "link back");
  }
  if (reading.query == ":SYST:ERR?" && isError(reading.answer)) {
    lastError_ = reading.answer;
    errors.tell(lastError_);
  }
  if (ChannelRecord* const channel = current()) {
    channel->counters.setLongestStep(std::max(longestAge(), kShortestSilence));
    if (reading.query == ":FETC:VOLT?") {
      keep(reading.answer, channel->volts, channel->lastVolts);
    } else if (reading.query == ":FETC:CURR?") {
      keep(reading.answer, channel->amperes, channel->lastAmperes);
      if (const auto amperes = numberIn(reading.answer)) {
        channel->counters.current(now(), *amperes);
      }
    } else if (reading.query == ":FETC:POW?") {
      keep(reading.answer, channel->watts, channel->lastWatts);
      if (const auto watts = numberIn(reading.answer)) {
        channel->counters.power(now(), *watts);
      }
    } else if (reading.query == ":LOAD?") {
      takeLoad(reading.answer);
    }
  }
  readings.tell(reading);
}

void Monitor::keep(std::string_view answer, Series& series, std::optional<Latest>& latest) {
  if (const auto value = numberIn(answer)) {
    series.add(now(), *value);
    latest = Latest{.value = *value, .text = std::string(answer), .at = now()};
  }
}

void Monitor::takeLoad(std::string_view answer) {
  const auto on = loadStateIn(answer);
  if (!on) {
    return;
  }
  ChannelRecord& channel = record(channel_);
  const auto before = channel.load.on();
  const bool byItself = channel.load.reported(*on);
  channel.counters.load(*on);
  if (byItself) {
    mark(Mark::Kind::Trip, "load went off by itself");
  } else if (before && *before != *on) {
    mark(*on ? Mark::Kind::LoadOn : Mark::Kind::LoadOff, *on ? "load on" : "load off");
  }
}

void Monitor::mark(Mark::Kind kind, std::string text) {
  const Mark mark{.at = now(), .kind = kind, .text = std::move(text)};
  if (ChannelRecord* const channel = current()) {
    channel->marks.push_back(mark);
    if (channel->marks.size() > kMostMarks) {
      channel->marks.pop_front();
    }
  }
  marks.tell(mark);
}

void Monitor::lose(std::string_view why) {
  if (!std::exchange(linkLost_, true)) {
    leave();
    mark(Mark::Kind::LinkLost, std::string(why));
  }
}

void Monitor::look() {
  const bool expected = load_.isConnected() && load_.AutoQuery();
  if (expected && !std::exchange(expecting_, expected)) {
    heard_ = now();
  }
  expecting_ = expected;
  if (expected && now() - heard_ > std::max(longestAge(), kShortestSilence)) {
    lose("no answer");
  }
}

void Monitor::changed(const toolkit::Control& control, toolkit::Property property) {
  if (control.name() == "cmdSendCmd" && property == toolkit::Property::Enabled) {
    if (!control.enabled() && !channel_.empty()) {
      lose("link closed");
    } else if (control.enabled() && std::exchange(linkLost_, false)) {
      heard_ = now();
      mark(Mark::Kind::LinkBack, "link back");
    }
  }
}

}  // namespace zanpanel
