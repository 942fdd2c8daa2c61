#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace zanpanel {

/// Since the program began; what happens to the machine's clock does not change it.
using Moment = std::chrono::milliseconds;

/// A point of a curve. A value that is not a number parts the line.
struct CurvePoint {
  Moment at;
  double value;
};

/// One reading over time, in bounded memory: about half a million values, which are a day of five a
/// second. The youngest are kept as they came, older ones as the lowest and the highest of eight,
/// and of sixty-four, in the order in which these came: no spike is ever lost.
class Series {
 public:
  /// Not before the one before it; a moment before the first one of all counts as that.
  void add(Moment at, double value);
  /// What comes next is not joined to what was before.
  void part() { parted_ = true; }

  [[nodiscard]] bool empty() const { return levels_.front().buckets.empty(); }
  /// When the last value came. Not for an empty series.
  [[nodiscard]] Moment last() const;
  /// When the oldest value came that is still known of. Not for an empty series.
  [[nodiscard]] Moment first() const;

  /// What a curve of that many columns shows of the time between, with the neighbours on both
  /// sides, so that the line goes on to the edges: at most four points a column.
  [[nodiscard]] std::vector<CurvePoint> curve(Moment from, Moment to, std::size_t columns) const;

  /// The value that came nearest to that moment.
  [[nodiscard]] std::optional<CurvePoint> nearest(Moment at) const;

 private:
  /// Hundredths of a second since the first value: enough for a year.
  using Tick = std::uint32_t;
  /// Values that follow each other.
  struct Bucket {
    Tick first;
    Tick last;
    float low;
    float high;
    bool lowFirst;
    bool parted;  ///< from the one before
  };
  struct Level {
    std::deque<Bucket> buckets;
    std::size_t inYoungest = 0;  ///< how many of the level below the last one holds
    bool forgot = false;
  };
  static constexpr std::size_t kLevels = 3;

  [[nodiscard]] Moment momentOf(Tick tick) const;
  [[nodiscard]] Tick tickOf(Moment at) const;
  void push(std::size_t level, const Bucket& bucket);
  static void merge(Bucket& into, const Bucket& next);
  [[nodiscard]] const Level& levelFor(Tick from, Tick to, std::size_t columns) const;

  std::array<Level, kLevels> levels_;
  Moment origin_{0};
  bool parted_ = false;
};

}  // namespace zanpanel
