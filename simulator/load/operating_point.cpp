#include "simulator/load/operating_point.hpp"

#include <cmath>
#include <limits>

namespace zansim {

double Supply::ampsAtVolts(double terminal) const {
  if (volts <= terminal) {
    return 0;
  }
  return ohms > 0 ? (volts - terminal) / ohms : std::numeric_limits<double>::infinity();
}

double Supply::ampsAtWatts(double watts) const {
  // volts * amps - ohms * amps^2 = watts, solved in the form that also holds without resistance.
  const double discriminant = volts * volts - 4 * ohms * watts;
  if (discriminant <= 0 || volts <= 0) {
    return std::numeric_limits<double>::infinity();
  }
  return 2 * watts / (volts + std::sqrt(discriminant));
}

}  // namespace zansim
