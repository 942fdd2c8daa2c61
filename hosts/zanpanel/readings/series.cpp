#include "hosts/zanpanel/readings/series.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zanpanel {

namespace {

constexpr std::chrono::milliseconds kTick{10};
/// Of each level.
constexpr std::size_t kMostBuckets = 8192;
/// Buckets of a level that become one of the next.
constexpr std::size_t kFold = 8;
constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

}  // namespace

Moment Series::momentOf(Tick tick) const {
  return origin_ + kTick * static_cast<std::int64_t>(tick);
}

Series::Tick Series::tickOf(Moment at) const {
  const auto ticks = (at - origin_) / kTick;
  return static_cast<Tick>(std::clamp<std::int64_t>(ticks, 0, std::numeric_limits<Tick>::max()));
}

Moment Series::first() const {
  return momentOf(levels_.back().buckets.front().first);
}

Moment Series::last() const {
  return momentOf(levels_.front().buckets.back().last);
}

void Series::add(Moment at, double value) {
  if (empty()) {
    origin_ = at;
  }
  const Tick tick = tickOf(at);
  const auto kept = static_cast<float>(value);
  push(0, {.first = tick,
           .last = tick,
           .low = kept,
           .high = kept,
           .lowFirst = true,
           .parted = parted_ || empty()});
  parted_ = false;
}

void Series::push(std::size_t number, const Bucket& bucket) {
  Level& level = levels_[number];
  level.buckets.push_back(bucket);
  if (level.buckets.size() > kMostBuckets) {
    level.buckets.pop_front();
    level.forgot = true;
  }
  if (number + 1 == kLevels) {
    return;
  }
  Level& above = levels_[number + 1];
  // A gap ends a bucket early: the line would go across it.
  if (above.inYoungest == 0 || above.inYoungest == kFold || bucket.parted) {
    push(number + 1, bucket);
    above.inYoungest = 1;
    return;
  }
  ++above.inYoungest;
  // Every level shows the youngest value, also where its bucket is not full.
  for (std::size_t i = number + 1; i < kLevels; ++i) {
    merge(levels_[i].buckets.back(), bucket);
  }
}

void Series::merge(Bucket& into, const Bucket& next) {
  into.last = next.last;
  const bool lower = next.low < into.low;
  const bool higher = next.high > into.high;
  if (lower || higher) {
    into.lowFirst = lower && higher ? next.lowFirst : higher;
  }
  into.low = std::min(into.low, next.low);
  into.high = std::max(into.high, next.high);
}

/// The finest that reaches back so far and has not too much to draw.
const Series::Level& Series::levelFor(Tick from, Tick to, std::size_t columns) const {
  for (const Level& level : levels_) {
    const bool reaches = !level.forgot || level.buckets.front().first <= from;
    const auto between = [&](Tick tick) {
      return std::ranges::lower_bound(level.buckets, tick, {}, &Bucket::last);
    };
    if (reaches && static_cast<std::size_t>(between(to) - between(from)) <= 2 * columns) {
      return level;
    }
  }
  return levels_.back();
}

std::vector<CurvePoint> Series::curve(Moment from, Moment to, std::size_t columns) const {
  std::vector<CurvePoint> points;
  if (empty() || columns == 0) {
    return points;
  }
  const auto& buckets = levelFor(tickOf(from), tickOf(to), columns).buckets;
  auto begin = std::ranges::lower_bound(buckets, tickOf(from), {}, &Bucket::last);
  auto end = std::ranges::upper_bound(buckets, tickOf(to), {}, &Bucket::first);
  begin -= begin == buckets.begin() ? 0 : 1;
  end += end == buckets.end() ? 0 : 1;
  const std::size_t group = 1 + static_cast<std::size_t>(end - begin) / (2 * columns + 2);
  while (begin != end) {
    Bucket drawn = *begin++;
    for (std::size_t i = 1; i < group && begin != end && !begin->parted; ++i) {
      merge(drawn, *begin++);
    }
    if (drawn.parted && !points.empty()) {
      points.push_back({momentOf(drawn.first), kNoValue});
    }
    points.push_back({momentOf(drawn.first), drawn.lowFirst ? drawn.low : drawn.high});
    if (drawn.first != drawn.last || drawn.low != drawn.high) {
      points.push_back({momentOf(drawn.last), drawn.lowFirst ? drawn.high : drawn.low});
    }
  }
  return points;
}

std::optional<CurvePoint> Series::nearest(Moment at) const {
  std::optional<CurvePoint> found;
  for (const CurvePoint& point : curve(at, at, 1)) {
    if (!std::isnan(point.value) &&
        (!found || std::chrono::abs(point.at - at) < std::chrono::abs(found->at - at))) {
      found = point;
    }
  }
  return found;
}

}  // namespace zanpanel
