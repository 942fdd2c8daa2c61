#include "lumodevice/toolkit/event_loop.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>

#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::toolkit {

/// Tells at its end, also when it ends by an exception.
class EventLoop::Change {
 public:
  explicit Change(EventLoop& loop) : loop_(loop) {}
  ~Change() { loop_.timersChanged(); }
  Change(const Change&) = delete;
  Change& operator=(const Change&) = delete;

 private:
  EventLoop& loop_;
};

EventLoop::~EventLoop() {
  while (!timers_.empty()) {
    timers_.back()->leaveLoop();
  }
}

void EventLoop::processEvents() {
  if (waits_ > 0) {
    return;
  }
  const Change change(*this);
  passObservers_.tell();
  const std::uint64_t pass = ++passes_;
  deliverInput();
  tickDue(pass);
}

void EventLoop::tickDue() {
  if (waits_ > 0) {
    return;
  }
  const Change change(*this);
  passObservers_.tell();
  tickDue(++passes_);
}

void EventLoop::tickDue(std::uint64_t pass) {
  const Duration begin = now();
  while (Timer* timer = earliestDue(begin, pass)) {
    tick(*timer, pass);
  }
}

void EventLoop::sleep(double milliseconds) {
  const double whole = std::nearbyint(milliseconds);
  if (!(whole > 0) || whole > std::numeric_limits<std::int32_t>::max()) {
    return;
  }
  const auto count = static_cast<std::int32_t>(whole);
  sleepObservers_.tell(count);
  idle(std::chrono::milliseconds(count));
}

void EventLoop::idle(Duration span) {
  struct Wait {
    int& waits;
    explicit Wait(int& count) : waits(++count) {}
    ~Wait() { --waits; }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
  };
  const Change change(*this);
  const Wait waiting(waits_);
  wait(span);
}

void EventLoop::runFor(Duration span) {
  if (waits_ > 0) {
    idle(span);
    return;
  }
  const Duration end = now() + span;
  for (;;) {
    processEvents();
    const Duration present = now();
    const Duration next = std::max(nextDue().value_or(Duration::max()), present);
    if (next > end && present >= end) {
      return;
    }
    // A handler that waited up to the end leaves timers due that the pass before did not see.
    idle(std::min(next, std::max(end, present)) - present);
  }
}

void EventLoop::attach(Timer& timer) {
  timers_.push_back(&timer);
  timersChanged();
}

void EventLoop::detach(Timer& timer) {
  std::erase(timers_, &timer);
  timersChanged();
}

Timer* EventLoop::earliestDue(Duration at, std::uint64_t pass) const {
  Timer* earliest = nullptr;
  for (Timer* timer : timers_) {
    const bool ready = timer->due_ && *timer->due_ <= at && !timer->ticking_;
    if (ready && timer->lastPass_ < pass && (earliest == nullptr || timer->due_ < earliest->due_)) {
      earliest = timer;
    }
  }
  return earliest;
}

std::optional<EventLoop::Duration> EventLoop::nextDue() const {
  std::optional<Duration> next;
  for (const Timer* timer : timers_) {
    if (timer->due_ && !timer->ticking_ && (!next || timer->due_ < next)) {
      next = timer->due_;
    }
  }
  return next;
}

void EventLoop::tick(Timer& timer, std::uint64_t pass) {
  // Set back even when the handler throws; a timer that is gone after its own tick is left alone.
  struct TickEnd {
    const std::vector<Timer*>& timers;
    Timer* timer;
    ~TickEnd() {
      if (std::find(timers.begin(), timers.end(), timer) != timers.end()) {
        timer->ticking_ = false;
      }
    }
  };
  const Change change(*this);
  const TickEnd end{timers_, &timer};
  timer.ticking_ = true;
  timer.lastPass_ = pass;
  timer.due_ = now() + timer.period();
  timersChanged();
  timer.tick.raise();
}

EventLoop::Duration RealTimeLoop::now() const {
  return std::chrono::steady_clock::now() - start_;
}

/// Not every system sleeps for less than a millisecond: there it returns at once.
void RealTimeLoop::wait(Duration span) {
  const Duration end = now() + span;
  for (Duration left = span; left > Duration(0); left = end - now()) {
    std::this_thread::sleep_for(left);
  }
}

void VirtualLoop::wait(Duration span) {
  now_ += std::max(span, Duration(0));
}

}  // namespace lumodevice::toolkit
