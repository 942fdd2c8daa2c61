#pragma once

#include <span>

#include "tests/slow/slow_bench.hpp"

namespace lumodevice::slow {

/// Something that an operator or a host has the component do over its link.
struct Operation {
  const char* name;
  void (*run)(SlowBench& bench);
};
[[nodiscard]] std::span<const Operation> operations();

}  // namespace lumodevice::slow
