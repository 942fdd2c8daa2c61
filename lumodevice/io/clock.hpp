#pragma once

#include <chrono>

#include "lumodevice/export.hpp"

namespace lumodevice::io {

/// The present date and time of day where the bench stands.
struct LUMODEVICE_API LocalTime {
  int year = 1970;
  int month = 1;  ///< 1 to 12
  int day = 1;    ///< 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
  /// Minutes east of UTC.
  int utcOffset = 0;
};

/// Tells the date and the time for what the component files and logs.
///
///     struct Noon : io::WallClock {
///       io::LocalTime now() const override { return {.year = 2031, .month = 3, .hour = 12}; }
///     };
class LUMODEVICE_API WallClock {
 public:
  virtual ~WallClock() = default;
  [[nodiscard]] virtual LocalTime now() const = 0;
};

/// A clock that counts from its own start and can be waited on; what links and simulated
/// instruments measure their time-outs with.
class LUMODEVICE_API Clock {
 public:
  using Duration = std::chrono::nanoseconds;
  virtual ~Clock() = default;
  [[nodiscard]] virtual Duration now() const = 0;
  virtual void wait(Duration span) = 0;
};

}  // namespace lumodevice::io
