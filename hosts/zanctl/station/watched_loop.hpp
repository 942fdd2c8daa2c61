#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include "lumodevice/toolkit/event_loop.hpp"

namespace zanctl {

/// Real time, in which somebody may look on while a wait passes.
class WatchedLoop : public lumodevice::toolkit::RealTimeLoop {
 public:
  explicit WatchedLoop(std::function<void()> onStep) : onStep_(std::move(onStep)) {}

 protected:
  void wait(Duration span) override {
    constexpr std::chrono::milliseconds kStep{100};
    const Duration end = now() + span;
    for (Duration left = span; left > Duration(0); left = end - now()) {
      RealTimeLoop::wait(std::min<Duration>(left, kStep));
      onStep_();
    }
  }

 private:
  std::function<void()> onStep_;
};

}  // namespace zanctl
