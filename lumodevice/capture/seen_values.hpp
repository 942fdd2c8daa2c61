#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "lumodevice/text/fault.hpp"

namespace lumodevice::capture {

/// The different values among bytes, in the order of their first appearance. A display dump knows
/// no more than the colours of the screen.
class SeenValues {
 public:
  static constexpr std::size_t kMost = 51;

  void clear() { count_ = 0; }
  /// Throws Fault(9) for the 52nd value.
  void offer(std::uint8_t value);
  [[nodiscard]] std::span<const std::uint8_t> values() const {
    return std::span(values_).first(count_);
  }

 private:
  std::array<std::uint8_t, kMost> values_{};
  std::size_t count_ = 0;
};

inline void SeenValues::offer(std::uint8_t value) {
  for (const std::uint8_t seen : values()) {
    if (seen == value) {
      return;
    }
  }
  if (count_ == kMost) {
    constexpr int kOutOfBounds = 9;
    throw Fault(kOutOfBounds, "more different values than a screen has");
  }
  values_[count_++] = value;
}

}  // namespace lumodevice::capture
