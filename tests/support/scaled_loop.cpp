#include "tests/support/scaled_loop.hpp"

#include <algorithm>
#include <thread>

namespace lumodevice::support {

namespace {

/// So finely does the other end see time pass within a wait: a millisecond of real time.
constexpr std::chrono::milliseconds kStep{ScaledLoop::kFaster};

}  // namespace

void ScaledLoop::wait(Duration span) {
  while (span > Duration::zero()) {
    const Duration step = std::min<Duration>(span, kStep);
    now_ += step;
    span -= step;
    if (meanwhile) {
      meanwhile(step / kFaster);
    } else {
      std::this_thread::sleep_for(step / kFaster);
    }
  }
}

}  // namespace lumodevice::support
