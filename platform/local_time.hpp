#pragma once

#include <chrono>

#include "lumodevice/io/clock.hpp"

namespace lumodevice::platform {

using Moment = std::chrono::time_point<std::chrono::system_clock, std::chrono::milliseconds>;

/// A moment as date and time in the system's local time zone.
[[nodiscard]] io::LocalTime localTime(Moment moment);

}  // namespace lumodevice::platform
