#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <pybind11/pybind11.h>

#include "lumodevice/toolkit/event_loop.hpp"

namespace lumopython {

/// What waits was broken off by Bench::breakOff().
struct BrokenOff {};

/// Looks now and then whether the program is to stop what it does: a signal whose handler raises
/// (Ctrl-C), or a word from another thread. Looking takes the interpreter's lock, which others may
/// hold for milliseconds, so it is not done at each of the many short waits of an exchange.
class Lookout {
 public:
  void look() {
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < kInterval) {
      return;
    }
    last_ = now;
    if (brokenOff_.exchange(false)) {
      throw BrokenOff();
    }
    const pybind11::gil_scoped_acquire locked;
    if (PyErr_CheckSignals() != 0) {
      throw pybind11::error_already_set();
    }
  }

  /// From any thread.
  void breakOff() { brokenOff_ = true; }
  void goOn() { brokenOff_ = false; }

  static constexpr std::chrono::milliseconds kInterval{50};

 private:
  std::chrono::steady_clock::time_point last_{};
  std::atomic<bool> brokenOff_ = false;
};

/// One of the library's loops for a Python program. It is run with the interpreter's lock free.
template <typename Loop>
class InterruptibleLoop : public Loop {
 public:
  explicit InterruptibleLoop(Lookout& lookout) : lookout_(lookout) {}

 protected:
  using Duration = lumodevice::toolkit::EventLoop::Duration;

  void wait(Duration span) override {
    const Duration end = this->now() + span;
    for (Duration left = span; left > Duration(0); left = end - this->now()) {
      Loop::wait(std::min<Duration>(left, Lookout::kInterval));
      lookout_.look();
    }
  }

  void deliverInput() override { lookout_.look(); }

 private:
  Lookout& lookout_;
};

}  // namespace lumopython
