#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include "hosts/zanctl/station/interruption.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace zanctl {

/// Real time, in which somebody may look on while a wait passes, or interrupt it.
class WatchedLoop : public lumodevice::toolkit::RealTimeLoop {
 public:
  explicit WatchedLoop(std::function<void()> onStep) : onStep_(std::move(onStep)) {}

 protected:
  void wait(Duration span) override {
    constexpr std::chrono::milliseconds kStep{100};
    const Duration end = now() + span;
    for (Duration left = span; left > Duration(0); left = end - now()) {
      RealTimeLoop::wait(std::min<Duration>(left, kStep));
      Interruption::check();
      onStep_();
    }
  }

 private:
  std::function<void()> onStep_;
};

}  // namespace zanctl
