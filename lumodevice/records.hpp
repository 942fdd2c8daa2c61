#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// The record types that the component shares with its hosts.
namespace lumodevice {

/// One colour of a bitmap palette: three bytes, in the order in which Windows bitmaps store them.
struct BGR {
  std::uint8_t rgbBlue = 0;
  std::uint8_t rgbGreen = 0;
  std::uint8_t rgbRed = 0;
  friend bool operator==(const BGR&, const BGR&) = default;
};
static_assert(sizeof(BGR) == 3);
static_assert(offsetof(BGR, rgbBlue) == 0 && offsetof(BGR, rgbGreen) == 1 &&
              offsetof(BGR, rgbRed) == 2);

/// One key area on the picture of the instrument's front panel, edges in the picture's coordinates.
/// Automation clients see it packed into 12 bytes: the reference to the text at 0, then the four
/// edges at 4, 6, 8 and 10.
struct devButton {
  std::string btnTitle;  ///< key name
  std::int16_t x1 = 0;   ///< left edge
  std::int16_t y1 = 0;   ///< top edge
  std::int16_t x2 = 0;   ///< right edge
  std::int16_t y2 = 0;   ///< bottom edge
};

}  // namespace lumodevice
