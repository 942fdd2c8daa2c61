#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/records.hpp"

namespace lumodevice::monitor {

/// The keys of the instrument's front panel, pressed by a position on a picture of it. Which areas
/// of the picture are keys is the host's to say; until it does there are none.
class FrontPanelKeys {
 public:
  static constexpr std::size_t kMostKeys = 51;

  FrontPanelKeys(form::Controls& form, link::Exchange& exchange)
      : form_(form), exchange_(exchange) {}

  /// Replaces the key areas, which are looked at in this order. Throws std::length_error for more
  /// than kMostKeys; the table is then the one before.
  void setKeys(std::span<const devButton> keys);

  /// Shows the position in lblKeyX and lblKeyY and presses the first key whose area holds it, edges
  /// excluded. Mouse button and shift state make no difference. A caption keeps its text for an
  /// infinite or undefined coordinate, which no area holds.
  void PressKeyAt(std::int16_t button, std::int16_t shift, float x, float y);

 private:
  [[nodiscard]] const devButton* keyAt(float x, float y) const;

  form::Controls& form_;
  link::Exchange& exchange_;
  std::array<devButton, kMostKeys> keys_;
  std::int16_t keyCount_ = 0;
};

}  // namespace lumodevice::monitor
