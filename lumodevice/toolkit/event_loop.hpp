#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/observers.hpp"

namespace lumodevice::toolkit {

class Timer;

/// What makes timers tick and lets an operation wait. The component runs on the thread of its loop
/// alone and waits only by processEvents() and sleep(), in the order that the operation names them.
///
/// Real time, virtual time and the loops of window systems derive from this class. One of a window
/// system keeps one timer of that system set to the next due time:
///
///     class WindowLoop : public EventLoop {
///      public:
///       [[nodiscard]] Duration now() const override { return clock.elapsed(); }
///
///      protected:
///       void wait(Duration span) override { repaintUntil(now() + span); }
///       void deliverInput() override { window.handleMessages(); }
///       void timersChanged() noexcept override { alarm.set(nextDue()); }  // its alarm: tickDue()
///     };
class LUMODEVICE_API EventLoop {
 public:
  using Duration = std::chrono::nanoseconds;

  EventLoop() = default;
  virtual ~EventLoop();
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  /// Time since the loop was made.
  [[nodiscard]] virtual Duration now() const = 0;

  /// One pass: whatever input waits, then every timer that is due when the pass begins, the one due
  /// earlier first, each at most once and none inside its own tick. Does nothing during a wait.
  void processEvents();

  /// A pass without input, for whoever has the input in hands of his own: the loop of a window
  /// system, also one nested in an operation (an information box). Does nothing during a wait.
  void tickDue();

  /// When the next timer is due, in the time of now(); perhaps past. Nothing when none runs.
  [[nodiscard]] std::optional<Duration> nextDue() const;

  /// A wait of the component: `milliseconds` during which no input and no timer is delivered. A
  /// wait of 0 or less, or beyond 32 bits, is none.
  void sleep(double milliseconds);

  /// Passes over all that happens within `span`, timers due at its very end included.
  void runFor(Duration span);

  /// Lets time pass without delivering anything and without counting as a wait of the component.
  void idle(Duration span);

  /// Tells of each wait of the component before it begins, for traces and the like.
  [[nodiscard]] Subscription observeSleeps(
      std::function<void(std::int32_t milliseconds)> observer) {
    return sleepObservers_.observe(std::move(observer));
  }
  /// Tells of each pass before it begins.
  [[nodiscard]] Subscription observePasses(std::function<void()> observer) {
    return passObservers_.observe(std::move(observer));
  }

 protected:
  /// Lets the span pass. A window system may be given the time to repaint; what else it brings up
  /// meanwhile ticks nothing here.
  virtual void wait(Duration span) = 0;

  /// Delivers the input of a window system or the like.
  virtual void deliverInput() {}

  /// nextDue() may have become another one. Told of whenever a timer starts, stops, begins or ends
  /// a tick, joins or leaves, and at the end of each pass and wait: who sets an alarm here, and
  /// calls tickDue() when it goes off, misses none.
  virtual void timersChanged() noexcept {}

 private:
  friend class Timer;
  class Change;
  void attach(Timer& timer);
  void detach(Timer& timer);
  [[nodiscard]] Timer* earliestDue(Duration at, std::uint64_t pass) const;
  void tickDue(std::uint64_t pass);
  void tick(Timer& timer, std::uint64_t pass);

  std::vector<Timer*> timers_;
  Observers<std::int32_t> sleepObservers_;
  Observers<> passObservers_;
  std::uint64_t passes_ = 0;
  int waits_ = 0;
};

/// Real time, for a program without a window system.
class LUMODEVICE_API RealTimeLoop : public EventLoop {
 public:
  [[nodiscard]] Duration now() const override;

 protected:
  void wait(Duration span) override;

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// A clock that jumps instead of waiting: an hour of ticks takes as long as its handlers do.
class LUMODEVICE_API VirtualLoop : public EventLoop {
 public:
  [[nodiscard]] Duration now() const override { return now_; }

 protected:
  void wait(Duration span) override;

 private:
  Duration now_{0};
};

}  // namespace lumodevice::toolkit
