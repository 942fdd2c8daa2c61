#include "simulator/screen/screen.hpp"

#include <sstream>
#include <string>
#include <string_view>

#include "simulator/screen/pages.hpp"
#include "simulator/screen/text.hpp"

namespace zansim {
namespace {

constexpr int kTitleHeight = 20;
constexpr Box kModeBadge{4, 24, 60, 19};
constexpr Box kModeText{70, 23, 150, 11};
constexpr Box kRangeText{70, 33, 150, 11};
constexpr Box kLoadBadge{226, 24, 90, 19};
constexpr int kMessageTop = 204;
constexpr int kKeysTop = 219;
constexpr int kKeyWidth = 64;
constexpr int kKeyHeight = 21;

/// White over the greens of the title.
constexpr Ramp kWhiteOnGreen = {ink::kDarkGreen + 5, ink::kDarkGreen + 7, ink::kDarkGreen + 9,
                                ink::kWhite};
constexpr Ramp kWhiteOnNavy = {ink::kGrey, ink::kLightGrey, ink::kSilver, ink::kWhite};

void drawTitle(Picture& picture, Mainframe& mainframe) {
  // Pale at the top, dark at the bottom, as if lit from above.
  for (int y = 0; y < kTitleHeight - 1; ++y) {
    const int shade = y < 6 ? 5 - y : 0;
    picture.base.fill({0, y, kScreenWidth, 1}, y < kTitleHeight - 4
                                                   ? static_cast<Ink>(ink::kDarkGreen + shade)
                                                   : ink::kOliveRow);
  }
  for (int x = 0; x < kScreenWidth; ++x) {
    picture.base.put(x, kTitleHeight - 1, static_cast<Ink>(ink::kLimeRow + x * 8 / kScreenWidth));
  }
  const Configuration& configuration = mainframe.configuration();
  const Box maker{6, 1, 186, kTitleHeight - 2};
  picture.base.write(maker, Align::Left, configuration.maker + "  " + configuration.model,
                     ink::kWhite);
  if (mainframe.channelCount() > 0) {
    const std::size_t number = mainframe.selectedChannel();
    picture.base.writeLarge(
        {198, 1, 116, kTitleHeight - 2}, Align::Right,
        "CH" + std::to_string(number) + " " + std::string(mainframe.module(number).text),
        Face::Badge, kWhiteOnGreen);
  }
}

std::string modeText(const Mode& mode) {
  return std::string(mode.dynamic ? "Dynamic " : "Constant ").append(quantityText(mode.regulation));
}

std::string rangeText(const Channel& channel) {
  const Settings& settings = channel.settings();
  const Module& module = channel.module();
  std::ostringstream text;
  text << "Range " << settings.fullScaleVolts(module) << " V / " << settings.fullScaleAmps(module)
       << " A";
  return text.str();
}

void drawMode(Picture& picture, const Channel& channel) {
  const Mode& mode = *channel.settings().mode;
  picture.base.fillRound(kModeBadge, ink::kNavy);
  picture.base.writeLarge(kModeBadge, Align::Centre, mode.word, Face::Badge, kWhiteOnNavy);
  picture.base.write(kModeText, Align::Left, modeText(mode), ink::kWhite);
  picture.base.write(kRangeText, Align::Left, rangeText(channel), ink::kLightGrey);
}

void drawLoad(Picture& picture, const Channel& channel) {
  if (channel.trip() != Trip::None) {
    picture.base.fillRound(kLoadBadge, ink::kRed);
    picture.overlay1.writeLarge(kLoadBadge, Align::Centre,
                                "TRIP " + std::string(tripText(channel.trip())), Face::Badge,
                                hard(overlay1::kWhite));
  } else if (channel.isOn()) {
    // The letters are holes through which the black below is seen.
    picture.overlay1.fillRound(kLoadBadge, overlay1::kOrange);
    picture.overlay1.writeLarge(kLoadBadge, Align::Centre, "LOAD ON", Face::Badge, hard(0));
  } else {
    picture.overlay1.frameRound(kLoadBadge, overlay1::kLightGrey);
    picture.overlay1.writeLarge(kLoadBadge, Align::Centre, "LOAD OFF", Face::Badge,
                                hard(overlay1::kLightGrey));
  }
}

std::string_view tripSentence(Trip trip) {
  switch (trip) {
    case Trip::None:
      return "";
    case Trip::OverCurrent:
      return "Over-current protection switched the load off";
    case Trip::OverVoltage:
      return "Over-voltage protection switched the load off";
    case Trip::UnderVoltage:
      return "Under-voltage protection switched the load off";
  }
  return "";
}

void drawMessage(Picture& picture, Mainframe& mainframe, Trip trip) {
  const Box line{6, kMessageTop, kScreenWidth - 12, 13};
  if (trip != Trip::None) {
    picture.base.write(line, Align::Left, tripSentence(trip), ink::kRed);
    return;
  }
  const Configuration& configuration = mainframe.configuration();
  picture.base.write({line.left, line.top, 220, line.height}, Align::Left,
                     configuration.serial + "  " + configuration.firmware, ink::kGrey);
  const std::size_t errors = mainframe.status().count();
  if (errors > 0) {
    picture.overlay1.write({line.left + 224, line.top, line.width - 224, line.height}, Align::Right,
                           "Errors: " + std::to_string(errors), overlay1::kOrange);
  }
}

/// F1 leads to the other page; the keys beside it have no use and are dimmed.
void drawKeys(Picture& picture, Mainframe::Page page) {
  const std::string_view labels[] = {page == Mainframe::Page::Readings ? "Settings" : "Readings",
                                     "Mode", "Range", "Protect", "Go/NoGo"};
  int left = 0;
  for (const std::string_view label : labels) {
    const bool useful = left == 0;
    const Box key{left + 1, kKeysTop, kKeyWidth - 2, kKeyHeight};
    picture.base.fillRound(key, useful ? ink::kNavy : ink::kDarkNavy);
    picture.overlay2.frameRound(key, useful ? overlay2::kPaleGreen : overlay2::kGrey);
    const std::string name = "F" + std::to_string(left / kKeyWidth + 1);
    picture.overlay2.write({key.left + 2, key.top + 2, key.width - 4, 8}, Align::Centre, name,
                           useful ? overlay2::kPaleGreen : overlay2::kGrey);
    picture.overlay2.write({key.left + 2, key.top + 11, key.width - 4, 8}, Align::Centre, label,
                           useful ? overlay2::kWhite : overlay2::kGrey);
    left += kKeyWidth;
  }
}

}  // namespace

Ink Picture::entry(int x, int y) const {
  const Ink above = overlay1.at(x, y);
  if (above != 0) {
    return kOverlay1Entries[above];
  }
  const Ink between = overlay2.at(x, y);
  return between != 0 ? kOverlay2Entries[between] : base.at(x, y);
}

Box drawPanel(Picture& picture, const Box& box, std::string_view title) {
  constexpr int kTitle = 12;
  picture.base.fillRound({box.left, box.top, box.width, kTitle + 1}, ink::kDarkNavy);
  picture.base.write({box.left + 5, box.top + 1, box.width - 10, kTitle - 1}, Align::Left, title,
                     ink::kWhite);
  picture.overlay2.frameRound(box, overlay2::kGrey);
  picture.overlay2.fill({box.left + 1, box.top + kTitle, box.width - 2, 1}, overlay2::kGrey);
  return {box.left + 4, box.top + kTitle + 2, box.width - 8, box.height - kTitle - 3};
}

Picture drawScreen(Mainframe& mainframe, Duration now) {
  Picture picture;
  drawTitle(picture, mainframe);
  Trip trip = Trip::None;
  if (mainframe.channelCount() == 0) {
    picture.base.write(kPage, Align::Centre, "There is no module in any slot", ink::kLightGrey);
  } else {
    const Channel& channel = mainframe.channel(mainframe.selectedChannel(), now);
    trip = channel.trip();
    drawMode(picture, channel);
    drawLoad(picture, channel);
    const auto draw = mainframe.page() == Mainframe::Page::Readings ? drawReadings : drawSettings;
    draw(picture, channel);
  }
  drawMessage(picture, mainframe, trip);
  drawKeys(picture, mainframe.page());
  return picture;
}

}  // namespace zansim
