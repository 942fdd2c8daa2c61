#include <string>
#include <string_view>

#include "simulator/screen/font.hpp"
#include "simulator/screen/pages.hpp"
#include "simulator/screen/text.hpp"

namespace zansim {
namespace {

using Number = double Settings::*;
using DynamicNumber = double Settings::DynamicOhms::*;

constexpr int kRowHeight = 11;
constexpr Box kLevels{4, kPage.top, 312, 83};
constexpr int kLabelWidth = 56;
constexpr int kColumnWidth = 50;
constexpr int kLowerTop = 132;
constexpr int kLowerHeight = 71;

/// The rows of the table of levels: what they are called, in which units, and where they are kept
/// in the columns. Null where a column lacks them.
struct LevelRow {
  std::string_view label;
  Number staticAmps;
  Number dynamicAmps;
  Number ohms;
  DynamicNumber dynamicOhms;
};
constexpr LevelRow kLevelRows[] = {
    {"L1", &Settings::staticAmpsA, &Settings::dynamicAmps1, &Settings::ohmsA,
     &Settings::DynamicOhms::ohms1},
    {"L2", &Settings::staticAmpsB, &Settings::dynamicAmps2, &Settings::ohmsB,
     &Settings::DynamicOhms::ohms2},
    {"Rise A/\x80s", &Settings::staticAmpsRise, &Settings::dynamicAmpsRise, &Settings::ohmsRise,
     &Settings::DynamicOhms::rise},
    {"Fall A/\x80s", &Settings::staticAmpsFall, &Settings::dynamicAmpsFall, &Settings::ohmsFall,
     &Settings::DynamicOhms::fall},
    {"T1 ms", nullptr, &Settings::dynamicAmpsTime1, nullptr, &Settings::DynamicOhms::time1},
    {"T2 ms", nullptr, &Settings::dynamicAmpsTime2, nullptr, &Settings::DynamicOhms::time2},
};

constexpr std::string_view kColumns[] = {"CC A", "CCD A", "CR \x7F", "CRDL \x7F", "CRDH \x7F"};

/// The column of the present mode; none in constant voltage.
int columnOf(const Mode& mode) {
  switch (mode.regulation) {
    case Regulation::Current:
      return mode.dynamic ? 1 : 0;
    case Regulation::Voltage:
      return -1;
    case Regulation::Resistance:
      return mode.dynamic ? (mode.low ? 3 : 4) : 2;
  }
  return -1;
}

std::string numberOr(const Settings& settings, Number number) {
  return number == nullptr ? std::string("-") : screenNumber(settings.*number);
}

void drawLevels(Picture& picture, const Settings& settings) {
  const Box content = drawPanel(picture, kLevels, "Levels");
  const auto column = [&](int index, int top, int height) {
    return Box{content.left + kLabelWidth + index * kColumnWidth, top, kColumnWidth - 5, height};
  };
  const int present = columnOf(*settings.mode);
  int index = 0;
  for (const std::string_view title : kColumns) {
    picture.base.write(column(index, kLevels.top + 1, 11), Align::Right, title, ink::kWhite);
    ++index;
  }
  int top = content.top;
  for (const LevelRow& row : kLevelRows) {
    picture.base.write({content.left + 1, top, kLabelWidth, kRowHeight}, Align::Left, row.label,
                       ink::kLightGrey);
    const std::string texts[] = {numberOr(settings, row.staticAmps),
                                 numberOr(settings, row.dynamicAmps), numberOr(settings, row.ohms),
                                 screenNumber(settings.dynamicLowOhms.*row.dynamicOhms),
                                 screenNumber(settings.dynamicHighOhms.*row.dynamicOhms)};
    index = 0;
    for (const std::string& text : texts) {
      picture.base.write(column(index, top, kRowHeight), Align::Right, text,
                         index == present ? ink::kYellow : ink::kWhite);
      ++index;
    }
    top += kRowHeight;
  }
  if (present >= 0) {
    const Box marked = column(present, kLevels.top, kLevels.height);
    picture.overlay1.frameRound({marked.left + 1, marked.top, marked.width + 3, marked.height},
                                overlay1::kOrange);
  }
}

struct Line {
  std::string_view label;
  std::string value;
  bool lit = false;
};

template <std::size_t count>
void drawList(Picture& picture, const Box& box, std::string_view title,
              const Line (&lines)[count]) {
  const Box content = drawPanel(picture, box, title);
  int top = content.top;
  for (const Line& line : lines) {
    picture.base.write({content.left + 1, top, content.width, kRowHeight}, Align::Left, line.label,
                       ink::kLightGrey);
    picture.base.write({content.left + 20, top, content.width - 21, kRowHeight}, Align::Right,
                       line.value, line.lit ? ink::kGreen : ink::kWhite);
    top += kRowHeight;
  }
}

std::string with(double value, std::string_view unit) {
  return screenNumber(value).append(" ").append(unit);
}

std::string_view onOff(bool on) {
  return on ? "ON" : "OFF";
}

std::string with(double value, std::string_view unit, bool on) {
  return with(value, unit).append(on ? " ON " : " OFF");
}

void drawVoltage(Picture& picture, const Settings& s) {
  const Box box{4, kLowerTop, 98, kLowerHeight};
  drawList(
      picture, box, "CV",
      {Line{"L1", with(s.voltsA, "V")}, Line{"L2", with(s.voltsB, "V")},
       Line{"Imax", with(s.voltsCurrentLimit, "A")}, Line{"Speed", s.voltsFast ? "FAST" : "LOW"}});
  if (s.mode->regulation == Regulation::Voltage) {
    picture.overlay1.frameRound(box, overlay1::kOrange);
  }
}

void drawProtections(Picture& picture, const Settings& s) {
  drawList(
      picture, {106, kLowerTop, 106, kLowerHeight}, "Protection",
      {Line{"OCP", with(s.overCurrent, "A", s.overCurrentOn), s.overCurrentOn},
       Line{"OVP", with(s.overVoltage, "V", s.overVoltageOn), s.overVoltageOn},
       Line{"UVP", with(s.underVoltage, "V", s.underVoltage > 0), s.underVoltage > 0},
       Line{"Von", with(s.onVolts, "V")}, Line{"Latch", std::string(onOff(s.onLatch)), s.onLatch}});
}

void drawLimits(Picture& picture, const Settings& s) {
  drawList(picture, {216, kLowerTop, 100, kLowerHeight}, "Go/NoGo",
           {Line{"V high", with(s.highestVolts, "V")}, Line{"V low", with(s.lowestVolts, "V")},
            Line{"A high", with(s.highestAmps, "A")}, Line{"A low", with(s.lowestAmps, "A")},
            Line{"Test", std::string(onOff(s.judging)), s.judging}});
}

}  // namespace

void drawSettings(Picture& picture, const Channel& channel) {
  drawLevels(picture, channel.settings());
  drawVoltage(picture, channel.settings());
  drawProtections(picture, channel.settings());
  drawLimits(picture, channel.settings());
}

}  // namespace zansim
