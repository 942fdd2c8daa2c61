#pragma once

#include <cstdint>

#include "simulator/quantities.hpp"

namespace zansim {

/// What hangs on the terminals of a channel: an electromotive force behind a resistance.
struct Source {
  double volts = 0;
  double ohms = 0;
  /// After this charge the electromotive force is 0; it falls in proportion to the charge drawn.
  /// 0 is a source that never runs down.
  double ampereHours = 0;
  double rippleVolts = 0;  ///< the most by which the volts waver within milliseconds
  double driftVolts = 0;   ///< the most by which they wander within minutes

  /// Volts lost for each coulomb drawn.
  [[nodiscard]] double voltsPerCoulomb() const;
  /// The electromotive force after `coulombs` at `instant`, never below 0. The same seed always
  /// gives the same ripple and drift.
  [[nodiscard]] double voltsAfter(double coulombs, Duration instant, std::uint64_t seed) const;
};

}  // namespace zansim
