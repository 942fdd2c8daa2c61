#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "simulator/quantities.hpp"

namespace zansim {

/// What a host finds behind a terminal or a socket. It has no clock; whoever feeds it says what
/// time it is.
class Served {
 public:
  virtual ~Served() = default;

  /// Bytes that the host has sent.
  virtual void feed(std::string_view bytes, Duration now) = 0;
  /// Fills the buffer with what is due for the host; how many bytes there were.
  [[nodiscard]] virtual std::size_t take(std::span<char> buffer, Duration now) = 0;
  /// When the next byte is due (perhaps in the past); nothing when none is on its way.
  [[nodiscard]] virtual std::optional<Duration> nextDue() const = 0;
  /// What waits for the host, in bytes of memory.
  [[nodiscard]] virtual std::size_t held() const = 0;
  /// The link is gone for good and all that came over it was taken.
  [[nodiscard]] virtual bool isLost() const = 0;
};

}  // namespace zansim
