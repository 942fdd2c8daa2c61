#pragma once

#include "lumodevice/io/clock.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace zansim {

/// The clock of simulated instruments: the time of the loop, virtual or real. What a link waits is
/// no wait of the component.
class LoopClock : public lumodevice::io::Clock {
 public:
  /// The loop must outlive the clock.
  explicit LoopClock(lumodevice::toolkit::EventLoop& loop) : loop_(loop) {}
  [[nodiscard]] Duration now() const override { return loop_.now(); }
  void wait(Duration span) override { loop_.idle(span); }

 private:
  lumodevice::toolkit::EventLoop& loop_;
};

}  // namespace zansim
