#pragma once

#include <chrono>
#include <cstdint>

namespace lumodevice::platform {

/// The moment at which a whole act has taken too long, however many waits it is made of.
class Deadline {
 public:
  /// `milliseconds` from now; VI_TMO_INFINITE (0xFFFFFFFF) never comes.
  explicit Deadline(std::uint32_t milliseconds);

  /// Milliseconds left as poll() takes them: rounded up, 0 when due, -1 when it never comes.
  [[nodiscard]] int remaining() const;

 private:
  bool never_;
  std::chrono::steady_clock::time_point due_;
};

}  // namespace lumodevice::platform
