#include "simulator/waveform.hpp"

#include <algorithm>
#include <cmath>

namespace zansim {
namespace {

/// A current on its way.
class Walk {
 public:
  Walk(double amps, const Waveform& waveform) : waveform_(waveform), course_{amps, 0, amps, amps} {}

  [[nodiscard]] const Course& course() const { return course_; }

  /// Towards a level, and then along it.
  void go(double level, double span);
  void goOnePeriod();
  /// The part of a period from `phase` on, at most `span` of it; how much that was.
  Duration goRestOfPeriod(Duration phase, Duration span);
  /// Down or up to the nearer level while the current is beyond both; the time that it takes, at
  /// most `span`.
  Duration comeBetween(Duration span);
  /// `count` periods, starting and ending at a period's start. The current is between the levels.
  void skip(double count);

 private:
  [[nodiscard]] double after(double amps, double periods) const;

  const Waveform& waveform_;
  Course course_;
};

double rampSpan(double from, double to, const Waveform& waveform) {
  return to > from ? (to - from) / waveform.rise : (from - to) / waveform.fall;
}

void Walk::go(double level, double span) {
  const double from = course_.amps;
  const double whole = rampSpan(from, level, waveform_);
  const double ramp = std::min(whole, span);
  const double slope = level > from ? waveform_.rise : -waveform_.fall;
  const double to = whole <= span ? level : from + slope * ramp;
  course_.coulombs += (from + to) / 2 * ramp + to * (span - ramp);
  course_.amps = to;
  course_.least = std::min(course_.least, to);
  course_.most = std::max(course_.most, to);
}

void Walk::goOnePeriod() {
  go(waveform_.first, seconds(waveform_.firstTime));
  go(waveform_.second, seconds(waveform_.secondTime));
}

Duration Walk::goRestOfPeriod(Duration phase, Duration span) {
  Duration gone{0};
  if (phase < waveform_.firstTime) {
    gone = std::min(waveform_.firstTime - phase, span);
    go(waveform_.first, seconds(gone));
  }
  const Duration left = std::min(waveform_.period() - phase, span) - gone;
  if (left > Duration::zero()) {
    go(waveform_.second, seconds(left));
    gone += left;
  }
  return gone;
}

Duration Walk::comeBetween(Duration span) {
  const auto [low, high] = std::minmax(waveform_.first, waveform_.second);
  const double level = std::clamp(course_.amps, low, high);
  const double ramp = rampSpan(course_.amps, level, waveform_);
  if (ramp >= seconds(span)) {
    go(level, seconds(span));
    return span;
  }
  const Duration gone(std::llround(std::ceil(ramp * 1e9)));
  go(level, seconds(gone));
  return std::min(gone, span);
}

double Walk::after(double amps, double periods) const {
  // Between the levels a period adds a fixed difference and cuts off at both ends, and so do many.
  const auto once = [&](double start) {
    Walk walk(start, waveform_);
    walk.goOnePeriod();
    return walk.course_.amps;
  };
  const auto [low, high] = std::minmax(waveform_.first, waveform_.second);
  const double up =
      waveform_.rise *
      seconds(waveform_.first > waveform_.second ? waveform_.firstTime : waveform_.secondTime);
  const double down =
      waveform_.fall *
      seconds(waveform_.first > waveform_.second ? waveform_.secondTime : waveform_.firstTime);
  return std::clamp(once(amps) + (periods - 1) * (up - down), once(low), once(high));
}

void Walk::skip(double count) {
  Walk early(course_.amps, waveform_);
  early.goOnePeriod();
  Walk late(after(course_.amps, count - 1), waveform_);
  late.goOnePeriod();
  course_.coulombs += count * (early.course_.coulombs + late.course_.coulombs) / 2;
  course_.amps = late.course_.amps;
  course_.least = std::min({course_.least, early.course_.least, late.course_.least});
  course_.most = std::max({course_.most, early.course_.most, late.course_.most});
}

}  // namespace

Course follow(double amps, const Waveform& waveform, Duration phase, Duration span) {
  Walk walk(amps, waveform);
  const Duration period = waveform.period();
  if (period == Duration::zero()) {
    walk.go(waveform.first, seconds(span));
    return walk.course();
  }
  const Duration outside = walk.comeBetween(span);
  Duration left = span - outside;
  left -= walk.goRestOfPeriod((phase + outside) % period, left);
  const Duration::rep whole = left / period;
  if (whole > 1) {
    walk.skip(static_cast<double>(whole));
    left -= period * whole;
  }
  while (left > Duration::zero()) {
    left -= walk.goRestOfPeriod(Duration::zero(), left);
  }
  return walk.course();
}

}  // namespace zansim
