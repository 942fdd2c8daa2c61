#include "platform/local_time.hpp"

#include <ctime>

namespace lumodevice::platform {

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

}  // namespace lumodevice::platform
