#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace zansim {

/// What a load keeps constant.
enum class Regulation : std::uint8_t { Current, Voltage, Resistance };

/// One of the ways to operate a channel.
struct Mode {
  std::string_view word;  ///< as ":MODE" takes and answers it
  Regulation regulation;
  bool low;      ///< in the low range of current or resistance
  bool dynamic;  ///< between two levels in turn
};

/// All modes; the first is the one after power-on.
[[nodiscard]] std::span<const Mode> modes();

struct Module;

/// All that can be set on a channel. Volts, amperes, ohms, A/us, milliseconds.
struct Settings {
  const Mode* mode = &modes().front();
  bool lowAmps = false;  ///< the range of the last constant-current mode
  bool lowOhms = false;  ///< the range of the last constant-resistance mode
  bool highVolts = true;

  double staticAmpsA = 0;
  double staticAmpsB = 0;  ///< the B values wait for the A/B key of the front panel
  double staticAmpsRise = 0;
  double staticAmpsFall = 0;

  double dynamicAmps1 = 0;
  double dynamicAmps2 = 0;
  double dynamicAmpsRise = 0;
  double dynamicAmpsFall = 0;
  double dynamicAmpsTime1 = 0;
  double dynamicAmpsTime2 = 0;

  double voltsA = 0;
  double voltsB = 0;
  double voltsCurrentLimit = 0;
  bool voltsFast = false;

  double ohmsA = 0;
  double ohmsB = 0;
  double ohmsRise = 0;
  double ohmsFall = 0;

  struct DynamicOhms {
    double ohms1 = 0;
    double ohms2 = 0;
    double rise = 0;
    double fall = 0;
    double time1 = 0;
    double time2 = 0;
    friend bool operator==(const DynamicOhms&, const DynamicOhms&) = default;
  };
  DynamicOhms dynamicLowOhms;
  DynamicOhms dynamicHighOhms;

  double overCurrent = 0;
  double overVoltage = 0;
  double underVoltage = 0;  ///< 0 is off
  bool overCurrentOn = false;
  bool overVoltageOn = false;

  bool judging = false;  ///< the Go/NoGo test is on
  double highestVolts = 0;
  double lowestVolts = 0;
  double highestAmps = 0;
  double lowestAmps = 0;

  double onVolts = 0;
  bool onLatch = false;

  friend bool operator==(const Settings&, const Settings&) = default;

  /// Of the present voltage range, and of the current range of the constant-current modes.
  [[nodiscard]] double fullScaleVolts(const Module& module) const;
  [[nodiscard]] double fullScaleAmps(const Module& module) const;
};

}  // namespace zansim
