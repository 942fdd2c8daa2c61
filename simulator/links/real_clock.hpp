#pragma once

#include <chrono>
#include <thread>

#include "lumodevice/io/clock.hpp"

namespace zansim {

/// Real time, for the simulator as a process or a shared library.
class RealClock : public lumodevice::io::Clock {
 public:
  [[nodiscard]] Duration now() const override { return std::chrono::steady_clock::now() - start_; }
  void wait(Duration span) override { std::this_thread::sleep_for(span); }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace zansim
