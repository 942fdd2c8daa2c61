#pragma once

#include <array>
#include <csignal>
#include <cstddef>

namespace zanctl {

/// Ctrl-C, SIGTERM or SIGHUP, thrown out of whatever waits. No std::exception: nothing but who
/// waits for it catches it.
struct Interrupted {
  int signal;
};

/// While one of these lives, those signals do not end the program at once but what it waits for:
/// a command can then end in order.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Throws Interrupted, once for each signal that came.
  static void check();

 private:
  static constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};
  std::array<struct sigaction, kSignals.size()> before_{};
};

}  // namespace zanctl
