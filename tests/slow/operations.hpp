#pragma once

#include <span>

#include "tests/slow/slow_bench.hpp"

namespace lumodevice::slow {

/// Something that an operator or a host has the component do over its link.
struct Operation {
  const char* name;
  void (*run)(SlowBench& bench);
  /// Changes the load behind the panel's back, as a host may.
  bool pastThePanel = false;
};
[[nodiscard]] std::span<const Operation> operations();

}  // namespace lumodevice::slow
