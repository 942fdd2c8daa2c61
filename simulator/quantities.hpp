#pragma once

#include <chrono>

namespace zansim {

/// Instants and spans of the simulator's clock; instants count from the clock's own start.
using Duration = std::chrono::nanoseconds;

[[nodiscard]] constexpr double seconds(Duration span) {
  return std::chrono::duration<double>(span).count();
}

/// What a number may be, both ends included.
struct Range {
  double least;
  double most;
};

}  // namespace zansim
