#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/io/clock.hpp"

/// How what is kept with its time is written.
namespace lumodevice::recordings {

/// ISO 8601 with milliseconds and the distance from UTC.
[[nodiscard]] std::string timeStamp(const io::LocalTime& time);

/// What such a stamp says; none for a text that is none.
[[nodiscard]] std::optional<io::LocalTime> timeIn(std::string_view stamp);

using Moment = std::chrono::sys_time<std::chrono::milliseconds>;
[[nodiscard]] Moment momentOf(const io::LocalTime& time);

/// A field of comma-separated values: in quotes where it would not be one else, and on one line.
[[nodiscard]] std::string csvField(std::string_view text);

/// The shortest text that is this number; "" for none.
[[nodiscard]] std::string csvNumber(const std::optional<double>& value);

/// Six digits behind the point, for what adds up.
[[nodiscard]] std::string csvTotal(double value);

/// A text on one line: whatever controls a terminal or ends a line is a blank.
[[nodiscard]] std::string onOneLine(std::string_view text);

}  // namespace lumodevice::recordings
