#include "recordings/recorded_clock.hpp"

#include <chrono>

#include "recordings/text_lines.hpp"

namespace lumodevice::recordings {

RecordedWallClock::RecordedWallClock(const std::string& begins, const io::Clock& clock)
    : clock_(clock),
      start_(momentOf(timeIn(begins).value_or(io::LocalTime())) -
             std::chrono::floor<std::chrono::milliseconds>(clock.now())) {}

io::LocalTime RecordedWallClock::now() const {
  return platform::localTime(start_ + std::chrono::floor<std::chrono::milliseconds>(clock_.now()));
}

}  // namespace lumodevice::recordings
