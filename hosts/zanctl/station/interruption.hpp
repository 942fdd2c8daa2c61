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
  /// What SIGHUP (Ctrl-Break) does: it ends as the others do, or is only noted.
  enum class Hangup { Ends, Noted };

  explicit Interruption(Hangup hangup = Hangup::Ends);
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Throws Interrupted, once for each signal that came.
  static void check();

  /// Whether SIGHUP was noted since this was asked last.
  [[nodiscard]] static bool takeHangup();

 private:
  struct Before;
  std::unique_ptr<Before> before_;  ///< what the signals did
};

}  // namespace zanctl
