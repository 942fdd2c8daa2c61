#pragma once

#include <optional>
#include <string_view>

#include "lumodevice/io/clock.hpp"

namespace zanctl {

/// "2031-04-01", "2031-04-01T06:30", "2031-04-01T06:30:15" or "06:30", the next time that a clock
/// that shows `now` shows it. None for anything else.
[[nodiscard]] std::optional<lumodevice::io::LocalTime> untilIn(
    std::string_view text, const lumodevice::io::LocalTime& now);

/// Whether a clock that shows `now` has come to that time.
[[nodiscard]] bool hasCome(const lumodevice::io::LocalTime& until,
                           const lumodevice::io::LocalTime& now);

}  // namespace zanctl
