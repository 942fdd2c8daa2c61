#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/screen/font.hpp"
#include "simulator/screen/pages.hpp"
#include "simulator/screen/text.hpp"

namespace zansim {
namespace {

constexpr Box kReadings{4, kPage.top, 208, 124};
constexpr Box kSettings{216, kPage.top, 100, 124};
constexpr int kReadingHeight = 41;
constexpr int kStateTop = 173;
constexpr int kStateWidth = 78;
constexpr int kStateHeight = 29;

constexpr Ramp kYellowOnBlack = {ink::kOliveRow + 4, ink::kAmberRow + 5, ink::kLimeRow + 6,
                                 ink::kYellow};
constexpr Ramp kGreenOnBlack = {ink::kOliveRow, ink::kLimeRow, ink::kBrightGreen, ink::kGreen};

struct Reading {
  std::string_view name;
  std::string_view unit;
  const Ramp& ramp;
  std::string text;
  double part;  ///< of full scale
};

/// A row of cells from green to yellow, lit up to `part`; the last ones are red.
void drawGauge(Layer& base, const Box& box, double part) {
  constexpr int kCells = 40;
  constexpr int kRedCells = 2;
  const int pitch = box.width / kCells;
  const int lit = static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * kCells));
  for (int cell = 0; cell < kCells; ++cell) {
    const Ink shade = static_cast<Ink>(ink::kLimeRow + cell * 8 / kCells);
    const Ink bright = cell >= kCells - kRedCells ? ink::kRed : shade;
    base.fill({box.left + cell * pitch, box.top, pitch - 1, box.height},
              cell < lit ? bright : ink::kDarkNavy);
  }
}

void drawReading(Picture& picture, const Box& row, const Reading& reading) {
  const Box number{row.left + 6, row.top + 3, 150, 30};
  picture.base.writeLarge(number, Align::Right, reading.text, Face::Reading, reading.ramp);
  const Box beside{row.left + 162, row.top + 3, 44, 30};
  picture.base.write({beside.left, beside.top, beside.width, 8}, Align::Left, reading.name,
                     ink::kLightGrey);
  picture.base.writeLarge({beside.left, beside.top + 12, beside.width, 18}, Align::Left,
                          reading.unit, Face::Unit, reading.ramp);
  drawGauge(picture.base, {row.left + 4, row.top + 36, 200, 3}, reading.part);
}

void drawNumbers(Picture& picture, const Channel& channel) {
  const Module& module = channel.module();
  const Settings& settings = channel.settings();
  const Terminals found = channel.terminals();
  const auto inRange = [&](double value) {
    return channel.isOverRange() ? std::string("OVER") : screenNumber(value);
  };
  const Reading readings[] = {
      {"Voltage", "V", kYellowOnBlack, inRange(found.volts),
       found.volts / settings.fullScaleVolts(module)},
      {"Current", "A", kGreenOnBlack, screenNumber(found.amps),
       found.amps / settings.fullScaleAmps(module)},
      {"Power", "W", kWhiteOnBlack, inRange(found.watts()), found.watts() / module.watts},
  };
  Box row{kReadings.left, kReadings.top + 1, kReadings.width, kReadingHeight};
  for (const Reading& reading : readings) {
    drawReading(picture, row, reading);
    row.top += kReadingHeight;
    if (row.top + kReadingHeight <= kReadings.top + kReadings.height) {
      for (int x = row.left + 4; x < row.left + row.width - 4; x += 2) {
        picture.overlay2.put(x, row.top, overlay2::kGrey);
      }
    }
  }
  picture.overlay2.frameRound(kReadings, overlay2::kGrey);
}

/// A line of the list beside the readings.
struct Line {
  std::string_view label;
  std::string value;
  std::string_view unit;
};

std::vector<Line> currentLines(const Settings& s) {
  if (!s.mode->dynamic) {
    return {{"L1", screenNumber(s.staticAmpsA), "A"},
            {"L2", screenNumber(s.staticAmpsB), "A"},
            {"Rise", screenNumber(s.staticAmpsRise), kAmperesPerMicrosecond},
            {"Fall", screenNumber(s.staticAmpsFall), kAmperesPerMicrosecond}};
  }
  return {{"L1", screenNumber(s.dynamicAmps1), "A"},
          {"L2", screenNumber(s.dynamicAmps2), "A"},
          {"Rise", screenNumber(s.dynamicAmpsRise), kAmperesPerMicrosecond},
          {"Fall", screenNumber(s.dynamicAmpsFall), kAmperesPerMicrosecond},
          {"T1", screenNumber(s.dynamicAmpsTime1), "ms"},
          {"T2", screenNumber(s.dynamicAmpsTime2), "ms"}};
}

std::vector<Line> resistanceLines(const Settings& s) {
  if (!s.mode->dynamic) {
    return {{"L1", screenNumber(s.ohmsA), kOhm},
            {"L2", screenNumber(s.ohmsB), kOhm},
            {"Rise", screenNumber(s.ohmsRise), kAmperesPerMicrosecond},
            {"Fall", screenNumber(s.ohmsFall), kAmperesPerMicrosecond}};
  }
  const Settings::DynamicOhms& ohms = s.mode->low ? s.dynamicLowOhms : s.dynamicHighOhms;
  return {{"L1", screenNumber(ohms.ohms1), kOhm},
          {"L2", screenNumber(ohms.ohms2), kOhm},
          {"Rise", screenNumber(ohms.rise), kAmperesPerMicrosecond},
          {"Fall", screenNumber(ohms.fall), kAmperesPerMicrosecond},
          {"T1", screenNumber(ohms.time1), "ms"},
          {"T2", screenNumber(ohms.time2), "ms"}};
}

std::vector<Line> voltageLines(const Settings& s) {
  return {{"L1", screenNumber(s.voltsA), "V"},
          {"L2", screenNumber(s.voltsB), "V"},
          {"Imax", screenNumber(s.voltsCurrentLimit), "A"},
          {"Speed", s.voltsFast ? "FAST" : "LOW", ""}};
}

std::vector<Line> linesOf(const Settings& settings) {
  switch (settings.mode->regulation) {
    case Regulation::Current:
      return currentLines(settings);
    case Regulation::Voltage:
      return voltageLines(settings);
    case Regulation::Resistance:
      return resistanceLines(settings);
  }
  return {};
}

void drawLines(Picture& picture, const Channel& channel) {
  const Settings& settings = channel.settings();
  std::vector<Line> lines = linesOf(settings);
  lines.push_back({"Von", screenNumber(settings.onVolts), "V"});
  lines.push_back({"Latch", settings.onLatch ? "ON" : "OFF", ""});
  const Box content = drawPanel(picture, kSettings, "Set values");
  Box row{content.left, content.top, content.width, 13};
  for (const Line& line : lines) {
    picture.base.write({row.left, row.top, 30, row.height}, Align::Left, line.label,
                       ink::kLightGrey);
    picture.base.write({row.left + 28, row.top, 37, row.height}, Align::Right, line.value,
                       ink::kWhite);
    picture.base.write({row.left + 69, row.top, 23, row.height}, Align::Left, line.unit,
                       ink::kLightGrey);
    row.top += row.height;
  }
}

struct State {
  std::string_view name;
  std::string text;
  Ink lamp;
  bool alarmed;
};

void drawState(Picture& picture, const Box& box, const State& state) {
  picture.base.fillRound(box, state.alarmed ? ink::kRed : ink::kBlack);
  picture.base.fillRound({box.left + 6, box.top + 6, 7, 7},
                         state.alarmed ? ink::kWhite : state.lamp);
  picture.base.write({box.left + 18, box.top + 4, box.width - 22, 10}, Align::Left, state.name,
                     ink::kWhite);
  picture.base.write({box.left + 6, box.top + 16, box.width - 10, 10}, Align::Left, state.text,
                     state.alarmed ? ink::kWhite : ink::kLightGrey);
  picture.overlay2.frameRound(box, overlay2::kGrey);
}

State protectionState(const Channel& channel, Trip kind, bool armed, double level,
                      std::string_view unit) {
  const bool tripped = channel.trip() == kind;
  const std::string present = armed ? screenNumber(level).append(" ").append(unit) : "off";
  return {tripText(kind), tripped ? "TRIPPED" : present, armed ? ink::kGreen : ink::kDarkGrey,
          tripped};
}

State verdictState(const Channel& channel) {
  switch (channel.verdict()) {
    case Verdict::NotJudged:
      break;
    case Verdict::Go:
      return {"Go/NoGo", "GO", ink::kGreen, false};
    case Verdict::NoGo:
      return {"Go/NoGo", "NO GO", ink::kRed, true};
  }
  return {"Go/NoGo", "off", ink::kDarkGrey, false};
}

void drawStates(Picture& picture, const Channel& channel) {
  const Settings& s = channel.settings();
  const State states[] = {
      protectionState(channel, Trip::OverCurrent, s.overCurrentOn, s.overCurrent, "A"),
      protectionState(channel, Trip::OverVoltage, s.overVoltageOn, s.overVoltage, "V"),
      protectionState(channel, Trip::UnderVoltage, s.underVoltage > 0, s.underVoltage, "V"),
      verdictState(channel)};
  Box box{4, kStateTop, kStateWidth - 3, kStateHeight};
  for (const State& state : states) {
    drawState(picture, box, state);
    box.left += kStateWidth + 1;
  }
}

}  // namespace

void drawReadings(Picture& picture, const Channel& channel) {
  drawNumbers(picture, channel);
  drawLines(picture, channel);
  drawStates(picture, channel);
}

}  // namespace zansim
