#pragma once

#include "lumodevice/io/clock.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice::platform {

/// The time of a loop, virtual or real, for what lives in it: simulated instruments, recordings
/// that are played back. What a link waits is no wait of the component.
class LoopClock : public io::Clock {
 public:
  /// The loop must outlive the clock.
  explicit LoopClock(toolkit::EventLoop& loop) : loop_(loop) {}
  [[nodiscard]] Duration now() const override { return loop_.now(); }
  void wait(Duration span) override { loop_.idle(span); }

 private:
  toolkit::EventLoop& loop_;
};

}  // namespace lumodevice::platform
