#include "platform/local_time.hpp"

#include <windows.h>

namespace lumodevice::platform {

namespace {

/// 100 ns units between 1601, where Windows begins to count, and 1970.
constexpr std::int64_t kEpoch = 116'444'736'000'000'000;
constexpr std::int64_t kTicksOfMillisecond = 10'000;
constexpr std::int64_t kTicksOfMinute = 60'000 * kTicksOfMillisecond;

std::int64_t ticksOf(const SYSTEMTIME& time) {
  FILETIME file{};
  (void)::SystemTimeToFileTime(&time, &file);
  return (std::int64_t{file.dwHighDateTime} << 32) | file.dwLowDateTime;
}

}  // namespace

io::LocalTime localTime(Moment moment) {
  const std::int64_t ticks = moment.time_since_epoch().count() * kTicksOfMillisecond + kEpoch;
  const FILETIME file{.dwLowDateTime = static_cast<DWORD>(ticks & 0xFFFFFFFF),
                      .dwHighDateTime = static_cast<DWORD>(ticks >> 32)};
  SYSTEMTIME universal{};
  SYSTEMTIME local{};
  (void)::FileTimeToSystemTime(&file, &universal);
  (void)::SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
  return {.year = local.wYear,
          .month = local.wMonth,
          .day = local.wDay,
          .hour = local.wHour,
          .minute = local.wMinute,
          .second = local.wSecond,
          .millisecond = local.wMilliseconds,
          .utcOffset = static_cast<int>((ticksOf(local) - ticksOf(universal)) / kTicksOfMinute)};
}

}  // namespace lumodevice::platform
