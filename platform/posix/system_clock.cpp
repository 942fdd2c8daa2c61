#include "platform/posix/system_clock.hpp"

#include <ctime>
#include <thread>

namespace lumodevice::posix {

io::LocalTime SystemWallClock::now() const {
  timespec moment{};
  ::clock_gettime(CLOCK_REALTIME, &moment);
  std::tm local{};
  ::localtime_r(&moment.tv_sec, &local);
  return {.year = local.tm_year + 1900,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = local.tm_sec,
          .millisecond = static_cast<int>(moment.tv_nsec / 1000000),
          .utcOffset = static_cast<int>(local.tm_gmtoff / 60)};
}

SystemClock::Duration SystemClock::now() const {
  return std::chrono::steady_clock::now() - start_;
}

void SystemClock::wait(Duration span) {
  std::this_thread::sleep_for(span);
}

}  // namespace lumodevice::posix
