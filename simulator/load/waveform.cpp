#include "simulator/load/waveform.hpp"

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
  void goPeriods(double count);

 private:
  /// How much a period that touches neither level adds to the current.
  [[nodiscard]] double drift() const;
  /// As many of `most` periods as surely touch neither level; how many that were.
  double driftOn(double most);

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

double Walk::drift() const {
  const bool up = waveform_.first > waveform_.second;
  const double rising = seconds(up ? waveform_.firstTime : waveform_.secondTime);
  const double falling = seconds(up ? waveform_.secondTime : waveform_.firstTime);
  return waveform_.rise * rising - waveform_.fall * falling;
}

double Walk::driftOn(double most) {
  const auto [low, high] = std::minmax(waveform_.first, waveform_.second);
  const double each = drift();
  Walk edge(each > 0 ? high : low, waveform_);
  edge.goOnePeriod();
  const double count = std::min(std::floor((edge.course_.amps - course_.amps) / each) - 1, most);
  if (!(count > 1)) {
    return 0;
  }
  // From one such period to the next, all that it does shifts by the same amount.
  Walk first(course_.amps, waveform_);
  first.goOnePeriod();
  Walk last(course_.amps + (count - 1) * each, waveform_);
  last.goOnePeriod();
  course_.coulombs += count * (first.course_.coulombs + last.course_.coulombs) / 2;
  course_.amps = last.course_.amps;
  course_.least = std::min({course_.least, first.course_.least, last.course_.least});
  course_.most = std::max({course_.most, first.course_.most, last.course_.most});
  return count;
}

void Walk::goPeriods(double count) {
  // Drift, then a few periods of settling; rounding could keep the ends of two periods apart for
  // ever, hence the bound.
  constexpr int kMostSettling = 8;
  for (int i = 0; i < kMostSettling && count > 0; ++i) {
    const Course before = course_;
    goOnePeriod();
    --count;
    if (course_.amps == before.amps || drift() == 0 || i + 1 == kMostSettling) {
      course_.coulombs += count * (course_.coulombs - before.coulombs);
      return;
    }
    count -= driftOn(count);
  }
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
  walk.goPeriods(static_cast<double>(whole));
  walk.goRestOfPeriod(Duration::zero(), left - period * whole);
  return walk.course();
}

}  // namespace zansim
