#include "platform/system_clock.hpp"

#include <thread>

namespace lumodevice::platform {

namespace {

Moment presentMoment() {
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

}  // namespace

io::LocalTime SystemWallClock::now() const {
  return localTime(presentMoment());
}

VirtualWallClock::VirtualWallClock(const io::Clock& clock)
    : clock_(clock),
      start_(presentMoment() - std::chrono::floor<std::chrono::milliseconds>(clock.now())) {}

io::LocalTime VirtualWallClock::now() const {
  return localTime(start_ + std::chrono::floor<std::chrono::milliseconds>(clock_.now()));
}

SystemClock::Duration SystemClock::now() const {
  return std::chrono::steady_clock::now() - start_;
}

/// Not every system sleeps for less than a millisecond: there it returns at once.
void SystemClock::wait(Duration span) {
  const Duration end = now() + span;
  for (Duration left = span; left > Duration(0); left = end - now()) {
    std::this_thread::sleep_for(left);
  }
}

}  // namespace lumodevice::platform
