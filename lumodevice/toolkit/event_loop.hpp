#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace lumodevice::toolkit {

class Timer;

/// What makes timers tick and lets an operation wait. The component runs on the thread of its loop
/// alone and waits only by processEvents() and sleep(), in the order that the operation names them.
///
/// Real time, virtual time and the loops of window systems are makes of this class.
class EventLoop {
 public:
  using Duration = std::chrono::nanoseconds;

  EventLoop() = default;
  virtual ~EventLoop();
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  /// Time since the loop was made.
  [[nodiscard]] virtual Duration now() const = 0;

  /// One pass: whatever input waits, then every timer that is due when the pass begins, the one due
  /// earlier first, each at most once and none inside its own tick.
  void processEvents();

  /// A wait of the component: `milliseconds` during which no input and no timer is delivered. A
  /// wait of 0 or less, or beyond 32 bits, is none.
  void sleep(double milliseconds);

  /// Passes over all that happens within `span`, timers due at its very end included.
  void runFor(Duration span);

  /// Lets time pass without delivering anything and without counting as a wait of the component.
  virtual void idle(Duration span) = 0;

  /// Observers, for traces and tests; each is called before the act that it tells of.
  std::function<void(std::int32_t milliseconds)> onSleep;
  std::function<void()> onPass;

 protected:
  /// Delivers the input of a window system or the like.
  virtual void deliverInput() {}

  /// When the next timer is due, in the time of now(); perhaps past. Nothing when none runs.
  [[nodiscard]] std::optional<Duration> nextDue() const;

 private:
  friend class Timer;
  void attach(Timer& timer);
  void detach(Timer& timer);
  [[nodiscard]] Timer* earliestDue(Duration at, std::uint64_t pass) const;
  void tick(Timer& timer, std::uint64_t pass);

  std::vector<Timer*> timers_;
  std::uint64_t passes_ = 0;
};

/// Real time, for a program without a window system.
class RealTimeLoop : public EventLoop {
 public:
  [[nodiscard]] Duration now() const override;
  void idle(Duration span) override;

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// A clock that jumps instead of waiting: an hour of ticks takes as long as its handlers do.
class VirtualLoop : public EventLoop {
 public:
  [[nodiscard]] Duration now() const override { return now_; }
  void idle(Duration span) override;

 private:
  Duration now_{0};
};

}  // namespace lumodevice::toolkit
