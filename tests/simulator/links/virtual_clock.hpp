#pragma once

#include "lumodevice/io/clock.hpp"

namespace zansim::tests {

/// A clock that stands still but for the waits.
class VirtualClock : public lumodevice::io::Clock {
 public:
  [[nodiscard]] Duration now() const override { return now_; }
  void wait(Duration span) override { now_ += span; }

 private:
  Duration now_{0};
};

}  // namespace zansim::tests
