#pragma once

#include <functional>

#include "lumodevice/io/clock.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice::support {

/// A loop for tests over real transports: its time passes in waits alone, and a wait takes a
/// twentieth of its length in real time, in which the other end can work. What lies between two
/// waits takes no time, so that a busy machine shifts no timer against a wait.
class ScaledLoop : public toolkit::EventLoop {
 public:
  static constexpr int kFaster = 20;

  [[nodiscard]] Duration now() const override { return now_; }

  /// Lets a span of real time pass while it works for the other end; a plain sleep when there is
  /// none. Called several times in a wait, with the loop's time going on in between.
  std::function<void(Duration real)> meanwhile;

 protected:
  void wait(Duration span) override;

 private:
  Duration now_{0};
};

/// The time of a loop, for an other end that works in the loop's waits.
class LoopClock : public io::Clock {
 public:
  explicit LoopClock(toolkit::EventLoop& loop) : loop_(loop) {}
  [[nodiscard]] Duration now() const override { return loop_.now(); }
  void wait(Duration span) override { loop_.idle(span); }

 private:
  toolkit::EventLoop& loop_;
};

}  // namespace lumodevice::support
