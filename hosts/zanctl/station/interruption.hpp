#pragma once

#include <memory>

namespace zanctl {

/// Ctrl-C, SIGTERM or SIGHUP (on Windows Ctrl-Break), thrown out of whatever waits. No
/// std::exception: nothing but who waits for it catches it.
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
  struct Before;
  std::unique_ptr<Before> before_;  ///< what the signals did
};

}  // namespace zanctl
