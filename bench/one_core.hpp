#pragma once

#include <sched.h>

namespace bench {

/// Pins the calling process to one core, so that both ends of an exchange take turns on it and the
/// cost of waking another core does not hide the cost of the code.
inline void pinToOneCore() {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  CPU_SET(0, &cores);
  (void)sched_setaffinity(0, sizeof cores, &cores);
}

}  // namespace bench
