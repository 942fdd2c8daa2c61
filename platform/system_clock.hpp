#pragma once

#include <chrono>

#include "lumodevice/io/clock.hpp"
#include "platform/local_time.hpp"

namespace lumodevice::platform {

/// The system's date and time in its local time zone.
class SystemWallClock : public io::WallClock {
 public:
  [[nodiscard]] io::LocalTime now() const override;
};

/// The system's date and time at its making, moved on by another clock from there: what the date is
/// in virtual time.
class VirtualWallClock : public io::WallClock {
 public:
  /// The clock must outlive this object.
  explicit VirtualWallClock(const io::Clock& clock);
  [[nodiscard]] io::LocalTime now() const override;

 private:
  const io::Clock& clock_;
  Moment start_;
};

/// The steady clock, counting from the construction of this object.
class SystemClock : public io::Clock {
 public:
  [[nodiscard]] Duration now() const override;
  void wait(Duration span) override;

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace lumodevice::platform
