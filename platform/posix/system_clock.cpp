#include "platform/posix/system_clock.hpp"

#include <chrono>
#include <ctime>
#include <thread>

namespace lumodevice::posix {

namespace {

using Moment = std::chrono::time_point<std::chrono::system_clock, std::chrono::milliseconds>;

Moment presentMoment() {
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

io::LocalTime localTime(Moment moment) {
  const auto second = std::chrono::floor<std::chrono::seconds>(moment);
  const std::time_t time = std::chrono::system_clock::to_time_t(second);
  std::tm local{};
  ::localtime_r(&time, &local);
  return {.year = local.tm_year + 1900,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = local.tm_sec,
          .millisecond = static_cast<int>((moment - second).count()),
          .utcOffset = static_cast<int>(local.tm_gmtoff / 60)};
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

void SystemClock::wait(Duration span) {
  std::this_thread::sleep_for(span);
}

}  // namespace lumodevice::posix
