#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "lumodevice/capture/display_dump.hpp"

namespace lumodevice::support {

namespace detail {

inline void paintPoint(toolkit::Picture& picture, const capture::ScreenPalette& palette, int x,
                       int y, std::uint8_t entry) {
  const BGR& colour = palette[entry];
  picture.setPoint(x, y, {.red = colour.rgbRed, .green = colour.rgbGreen, .blue = colour.rgbBlue});
}

using OverlayEntries = std::array<std::uint8_t, 4>;

/// An overlay's byte holds four rows of a column, the lowest row of the screen first.
inline void paintOverlay(std::span<const std::uint8_t> plane, const OverlayEntries& entries,
                         const capture::ScreenPalette& palette, toolkit::Picture& picture) {
  for (int x = 0; x < 320; ++x) {
    for (int y = 0; y < 240; ++y) {
      const auto row = static_cast<unsigned>(239 - y);
      const unsigned byte = plane[std::size_t{row / 4} * 320 + static_cast<unsigned>(x)];
      const std::uint8_t entry = entries[byte >> (2 * (row % 4)) & 3U];
      if (entry != 0) {
        paintPoint(picture, palette, 319 - x, y, entry);
      }
    }
  }
}

}  // namespace detail

/// The picture of a dump, painted one point after the other: what paintDump is held against.
[[nodiscard]] inline toolkit::Picture paintPointByPoint(std::span<const std::uint8_t> dump,
                                                        const capture::ScreenPalette& palette) {
  constexpr std::size_t kBase = 81920;
  constexpr std::size_t kOverlay = 20480;
  toolkit::Picture picture(320, 240);
  for (int x = 0; x < 320; ++x) {
    for (int y = 0; y < 240; ++y) {
      detail::paintPoint(picture, palette, 319 - x, y, dump[static_cast<std::size_t>(x * 256 + y)]);
    }
  }
  detail::paintOverlay(dump.subspan(kBase + kOverlay, kOverlay), {0, 8, 7, 6}, palette, picture);
  detail::paintOverlay(dump.subspan(kBase, kOverlay), {0, 15, 11, 19}, palette, picture);
  return picture;
}

}  // namespace lumodevice::support
