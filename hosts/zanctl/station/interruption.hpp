#pragma once

#include <array>
#include <csignal>
#include <exception>

namespace zanctl {

/// Thrown by the loop's waits once the program was asked to end.
struct Interrupted : std::exception {};

/// While it lives, Ctrl-C and its kin do not end the program on the spot: the next wait of the loop
/// throws, what was put aside comes back, and the end of this object is the program's, as the
/// signal would have it. A second one ends it at once. One at a time.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Throws Interrupted when a signal has come.
  static void check();

 private:
  static constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

  std::array<void (*)(int), kSignals.size()> before_{};
};

}  // namespace zanctl
