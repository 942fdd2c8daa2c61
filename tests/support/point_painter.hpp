#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "lumodevice/capture/display_dump.hpp"

namespace lumodevice::support {

/// The palette entry that a dump has for point x, y of the picture: what paintDump is held against.
[[nodiscard]] inline std::uint8_t entryOf(std::span<const std::uint8_t> dump, int x, int y) {
  constexpr std::size_t kBase = 81920;
  constexpr std::size_t kOverlay = 20480;
  constexpr std::array<std::array<std::uint8_t, 4>, 2> kEntries = {{{0, 15, 11, 19}, {0, 8, 7, 6}}};
  const auto column = static_cast<std::size_t>(319 - x);
  // An overlay's byte holds four rows of a column, the lowest row of the screen first.
  const auto row = static_cast<std::size_t>(239 - y);
  for (std::size_t overlay = 0; overlay < kEntries.size(); ++overlay) {
    const unsigned byte = dump[kBase + overlay * kOverlay + row / 4 * 320 + column];
    const std::uint8_t entry = kEntries[overlay][byte >> (2 * (row % 4)) & 3U];
    if (entry != 0) {
      return entry;
    }
  }
  return dump[column * 256 + static_cast<std::size_t>(y)];
}

[[nodiscard]] inline toolkit::Colour pointOf(std::span<const std::uint8_t> dump,
                                             const capture::ScreenPalette& palette, int x, int y) {
  const BGR& colour = palette[entryOf(dump, x, y)];
  return {.red = colour.rgbRed, .green = colour.rgbGreen, .blue = colour.rgbBlue};
}

/// The picture of a dump, painted one point after the other.
[[nodiscard]] inline toolkit::Picture paintPointByPoint(std::span<const std::uint8_t> dump,
                                                        const capture::ScreenPalette& palette) {
  toolkit::Picture picture(320, 240);
  for (int x = 0; x < 320; ++x) {
    for (int y = 0; y < 240; ++y) {
      picture.setPoint(x, y, pointOf(dump, palette, x, y));
    }
  }
  return picture;
}

}  // namespace lumodevice::support
