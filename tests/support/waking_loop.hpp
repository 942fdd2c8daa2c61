#pragma once

#include <algorithm>
#include <optional>
#include <utility>

#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice::support {

/// Wakes as the loop of a window system does: by one alarm that goes off once and is set by what
/// the loop is told of its timers. It never looks by itself whether one is due.
class WakingLoop : public toolkit::VirtualLoop {
 public:
  /// Comes to `end` by way of every alarm up to it; may be nested.
  void runUntil(Duration end) {
    while (alarm_ && *alarm_ <= end) {
      comeTo(*std::exchange(alarm_, std::nullopt));
      tickDue();
    }
    comeTo(end);
  }
  /// The alarm goes off now, too early perhaps.
  void wakeUp() {
    alarm_.reset();
    tickDue();
  }
  [[nodiscard]] std::optional<Duration> alarm() const { return alarm_; }

 protected:
  void timersChanged() noexcept override { alarm_ = nextDue(); }

 private:
  /// Not by idle(), at whose end the alarm would be set anew.
  void comeTo(Duration moment) { VirtualLoop::wait(std::max(moment - now(), Duration(0))); }

  std::optional<Duration> alarm_;
};

}  // namespace lumodevice::support
