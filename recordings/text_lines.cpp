#include "recordings/text_lines.hpp"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace lumodevice::recordings {

namespace {

constexpr int kTotalDecimals = 6;

}  // namespace

std::string timeStamp(const io::LocalTime& time) {
  std::array<char, 64> stamp{};
  const int offset = std::abs(time.utcOffset);
  (void)std::snprintf(stamp.data(), stamp.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03d%c%02d:%02d",
                      time.year, time.month, time.day, time.hour, time.minute, time.second,
                      time.millisecond, time.utcOffset < 0 ? '-' : '+', offset / 60, offset % 60);
  return stamp.data();
}

std::optional<io::LocalTime> timeIn(std::string_view stamp) {
  constexpr std::string_view kPattern = "0000-00-00T00:00:00.000+00:00";
  if (stamp.size() != kPattern.size()) {
    return std::nullopt;
  }
  for (std::size_t i = 0; i < stamp.size(); ++i) {
    const bool digit = stamp[i] >= '0' && stamp[i] <= '9';
    const bool sign = kPattern[i] == '+' && stamp[i] == '-';
    if (kPattern[i] == '0' ? !digit : stamp[i] != kPattern[i] && !sign) {
      return std::nullopt;
    }
  }
  const auto number = [&](std::size_t begin, std::size_t digits) {
    int value = 0;
    (void)std::from_chars(stamp.data() + begin, stamp.data() + begin + digits, value);
    return value;
  };
  const int offset = 60 * number(24, 2) + number(27, 2);
  const io::LocalTime time{.year = number(0, 4),
                           .month = number(5, 2),
                           .day = number(8, 2),
                           .hour = number(11, 2),
                           .minute = number(14, 2),
                           .second = number(17, 2),
                           .millisecond = number(20, 3),
                           .utcOffset = stamp[23] == '-' ? -offset : offset};
  const bool date = time.month >= 1 && time.month <= 12 && time.day >= 1 && time.day <= 31;
  return date ? std::optional(time) : std::nullopt;
}

Moment momentOf(const io::LocalTime& time) {
  const std::chrono::year_month_day date{std::chrono::year(time.year),
                                         std::chrono::month(static_cast<unsigned>(time.month)),
                                         std::chrono::day(static_cast<unsigned>(time.day))};
  return std::chrono::sys_days(date) + std::chrono::hours(time.hour) +
         std::chrono::minutes(time.minute - time.utcOffset) + std::chrono::seconds(time.second) +
         std::chrono::milliseconds(time.millisecond);
}

std::string onOneLine(std::string_view text) {
  std::string line(text);
  for (char& character : line) {
    if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') {
      character = ' ';
    }
  }
  return line;
}

std::string csvField(std::string_view text) {
  const std::string line = onOneLine(text);
  if (line.find_first_of(",\"") == std::string::npos) {
    return line;
  }
  std::string quoted = "\"";
  for (const char character : line) {
    quoted += character;
    if (character == '"') {
      quoted += character;
    }
  }
  return quoted + '"';
}

std::string csvNumber(const std::optional<double>& value) {
  if (!value) {
    return {};
  }
  std::array<char, 64> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), *value);
  return {text.data(), written.ptr};
}

std::string csvTotal(double value) {
  std::array<char, 400> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), value,
                                     std::chars_format::fixed, kTotalDecimals);
  return {text.data(), written.ptr};
}

}  // namespace lumodevice::recordings
