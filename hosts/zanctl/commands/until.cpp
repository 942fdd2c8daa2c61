#include "hosts/zanctl/commands/until.hpp"

#include <chrono>
#include <string>
#include <tuple>

#include "recordings/text_lines.hpp"

namespace zanctl {

namespace {

using lumodevice::io::LocalTime;

auto orderOf(const LocalTime& time) {
  return std::tuple(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

LocalTime dayAfter(const LocalTime& time) {
  const std::chrono::year_month_day today{std::chrono::year(time.year),
                                          std::chrono::month(static_cast<unsigned>(time.month)),
                                          std::chrono::day(static_cast<unsigned>(time.day))};
  const std::chrono::year_month_day next{std::chrono::sys_days(today) + std::chrono::days(1)};
  LocalTime after = time;
  after.year = static_cast<int>(next.year());
  after.month = static_cast<int>(static_cast<unsigned>(next.month()));
  after.day = static_cast<int>(static_cast<unsigned>(next.day()));
  return after;
}

}  // namespace

std::optional<LocalTime> untilIn(std::string_view text, const LocalTime& now) {
  // What is left out is the beginning of it.
  constexpr std::string_view kWhole = "0000-00-00T00:00:00.000+00:00";
  constexpr std::size_t kDate = 10;
  constexpr std::size_t kTimeOfDay = 5;
  const std::string today = lumodevice::recordings::timeStamp(now).substr(0, kDate + 1);
  const bool timeOnly = text.size() == kTimeOfDay;
  std::string stamp = timeOnly ? today + std::string(text) : std::string(text);
  if (stamp.size() != kDate && stamp.size() != kDate + 1 + kTimeOfDay &&
      stamp.size() != kDate + 1 + kTimeOfDay + 3) {
    return std::nullopt;
  }
  stamp += kWhole.substr(stamp.size());
  auto time = lumodevice::recordings::timeIn(stamp);
  if (!time || time->hour > 23 || time->minute > 59 || time->second > 59) {
    return std::nullopt;
  }
  return timeOnly && hasCome(*time, now) ? dayAfter(*time) : time;
}

bool hasCome(const LocalTime& until, const LocalTime& now) {
  return orderOf(now) >= orderOf(until);
}

}  // namespace zanctl
