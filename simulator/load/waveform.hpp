#pragma once

#include "simulator/quantities.hpp"

namespace zansim {

/// What a current is to be: one level, or two in turn with limited slew rates.
struct Waveform {
  double first = 0;
  double second = 0;
  Duration firstTime{0};  ///< both times 0: `first` for ever
  Duration secondTime{0};
  double rise = 0;  ///< amperes a second, above 0
  double fall = 0;

  [[nodiscard]] Duration period() const { return firstTime + secondTime; }
};

/// What became of a current over a span of time.
struct Course {
  double amps;      ///< at its end
  double coulombs;  ///< what flowed
  double least;     ///< amperes, over the whole span
  double most;
};

/// The current that starts at `amps`, `phase` after the start of a period, after `span`. The work
/// does not grow with the span: periods alike, and those in which the current drifts without
/// reaching a level, are reckoned in one go.
[[nodiscard]] Course follow(double amps, const Waveform& waveform, Duration phase, Duration span);

}  // namespace zansim
