#include "simulator/load/source.hpp"

#include <algorithm>

namespace zansim {
namespace {

constexpr double kSecondsPerHour = 3600;
constexpr Duration kRippleSpan = std::chrono::milliseconds(1);
constexpr Duration kDriftSpan = std::chrono::seconds(20);
constexpr std::uint64_t kDriftSalt = 0xD1B54A32D192ED03U;

/// A number between -1 and 1 that looks random and depends on nothing but its arguments.
double scattered(std::uint64_t seed, std::uint64_t index) {
  std::uint64_t bits = seed + (index + 1) * 0x9E3779B97F4A7C15U;
  bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
  bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
  bits ^= bits >> 31U;
  return static_cast<double>(bits >> 11U) * 0x1p-52 - 1;
}

/// A smooth wandering between -1 and 1 that turns at most once in each `span`. It is computed for
/// any instant without those before it.
double wander(std::uint64_t seed, Duration instant, Duration span) {
  const auto knot = static_cast<std::uint64_t>(instant / span);
  const double part = seconds(instant % span) / seconds(span);
  const double blend = part * part * (3 - 2 * part);
  return scattered(seed, knot) * (1 - blend) + scattered(seed, knot + 1) * blend;
}

}  // namespace

double Source::voltsPerCoulomb() const {
  return ampereHours > 0 ? volts / (ampereHours * kSecondsPerHour) : 0;
}

double Source::voltsAfter(double coulombs, Duration instant, std::uint64_t seed) const {
  double present = volts - voltsPerCoulomb() * coulombs;
  if (rippleVolts > 0) {
    present += rippleVolts * wander(seed, instant, kRippleSpan);
  }
  if (driftVolts > 0) {
    present += driftVolts * wander(seed ^ kDriftSalt, instant, kDriftSpan);
  }
  return std::max(present, 0.0);
}

}  // namespace zansim
