#include "hosts/zanctl/commands/channel_reader.hpp"

#include <algorithm>
#include <chrono>

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/controls.hpp"

namespace zanctl {

namespace {

namespace text = lumodevice::text;
using lumodevice::toolkit::ComboBox;

constexpr std::chrono::milliseconds kLateAnswers{1000};

Channel channelOf(std::string_view name) {
  const double number = text::Val(name.substr(std::min<std::size_t>(name.size(), 2)));
  return {static_cast<int>(std::clamp(number, 0.0, 1e6)), std::string(name)};
}

const ComboBox& channelList(Station& station) {
  return station.component().surface().get<ComboBox>("cmbChannel");
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

/// The one number that an answer is; "" for an answer that did not come, was garbled, or is two
/// that ran together: a table is no place for it.
std::string numberIn(const std::string& answer) {
  const std::string number = text::Trim(answer);
  const bool plain = number.find_first_not_of("0123456789.+-eE") == std::string::npos;
  return plain && text::isNumericText(number) ? number : "";
}

}  // namespace

ChannelsToRead channelsToRead(Station& station, int channel) {
  ChannelsToRead read;
  const ComboBox& list = channelList(station);
  for (int i = 0; i < list.listCount(); ++i) {
    const Channel each = channelOf(list.list(i));
    if (channel == 0 || each.number == channel) {
      read.channels.push_back(each);
    }
  }
  const bool some = passOver(station, read.channels);
  read.complete = !some;
  if (read.channels.empty() && !some) {
    station.fail(channel == 0 ? "the instrument lists no channels"
                              : "the instrument has no channel " + std::to_string(channel) +
                                    " (see zanctl connect)");
  }
  return read;
}

ChannelReader::ChannelReader(Station& station)
    : station_(station), shown_(channelOf(channelList(station).text()).number), selected_(shown_) {}

void ChannelReader::select(int channel) {
  if (selected_ != channel && channel >= 1 && channel <= kLastChannel) {
    station_.component().SendCmd(":CHAN " + std::to_string(channel));
    selected_ = channel;
  }
}

ChannelReader::Answers ChannelReader::read(const Channel& channel) {
  select(channel.number);
  Answers answers;
  for (std::size_t i = 0; i < answers.size() && !isLost(); ++i) {
    station_.component().SendCmd(kReadingColumns[i].query);
    const std::string answer = station_.component().ResultStr();
    silent_ = answer.empty() ? silent_ + 1 : 0;
    answers.at(i) = numberIn(answer);
    if (answers.at(i).empty()) {
      // What is late must not arrive as the answer of the next query.
      station_.loop().runFor(kLateAnswers);
    }
  }
  return answers;
}

std::optional<double> ChannelReader::valueOf(const std::string& answer) {
  return answer.empty() ? std::nullopt : std::optional(text::Val(answer));
}

bool ChannelReader::isComplete(const Answers& answers) {
  return std::ranges::none_of(answers, &std::string::empty);
}

bool ChannelReader::isLost() const {
  return !station_.component().isConnected() || isSilent();
}

void ChannelReader::regained() {
  silent_ = 0;
  selected_ = 0;
}

void addReadings(Json& object, const ChannelReader::Answers& answers) {
  for (std::size_t i = 0; i < answers.size(); ++i) {
    const Json number = wireNumber(answers.at(i));
    object[std::string(kReadingColumns[i].column)] =
        i == kLoad && !number.is_null() ? Json(number != 0) : number;
  }
}

Measured measuredIn(const ChannelReader::Answers& answers) {
  const auto load = ChannelReader::valueOf(answers[kLoad]);
  return {.volts = ChannelReader::valueOf(answers[kVolts]),
          .watts = ChannelReader::valueOf(answers[kWatts]),
          .on = load ? std::optional(*load != 0) : std::nullopt};
}

}  // namespace zanctl
