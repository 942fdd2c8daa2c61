#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "lumodevice/capture/screen_palette.hpp"
#include "lumodevice/toolkit/picture.hpp"

namespace lumodevice::capture {

inline constexpr int kScreenWidth = 320;
inline constexpr int kScreenHeight = 240;

/// The raw display memory: a plane of palette indexes, column by column and 256 rows to the column,
/// of which the first 240 are shown; then two overlays of four rows to the byte. The base plane is
/// mirrored left to right against the picture, the overlays also stand upside down.
class DisplayDump {
 public:
  static constexpr std::size_t kColumnSize = 256;
  static constexpr std::size_t kBaseSize = kScreenWidth * kColumnSize;
  static constexpr std::size_t kOverlaySize = kScreenWidth * kColumnSize / 4;
  static constexpr std::size_t kSize = kBaseSize + 2 * kOverlaySize;  // 122880

  explicit DisplayDump(std::span<const std::uint8_t, kSize> bytes) : bytes_(bytes) {}

  [[nodiscard]] auto base() const { return bytes_.first<kBaseSize>(); }
  /// plane 1 or 2.
  [[nodiscard]] auto overlay(int plane) const {
    return bytes_.subspan(kBaseSize + static_cast<std::size_t>(plane - 1) * kOverlaySize,
                          kOverlaySize);
  }

 private:
  std::span<const std::uint8_t, kSize> bytes_;
};

/// What stands in front of a dump that was saved as it came over the serial port.
inline constexpr std::string_view kDumpHeader = "#6122880";

/// The dump in a file, whether a header stands in front of it or not; none when it is cut short.
[[nodiscard]] std::optional<DisplayDump> dumpIn(std::span<const std::uint8_t> file);

/// Palette indexes of the 2-bit values of overlay 1 and 2; 0 is transparent.
inline constexpr std::uint8_t kOverlayIndexes[2][4] = {{0, 15, 11, 19}, {0, 8, 7, 6}};

/// The palette indexes of an overlay's byte, whose lowest bits are row 0.
constexpr void UnpackOverlayByte(std::uint8_t byte, std::uint8_t& row3, std::uint8_t& row2,
                                 std::uint8_t& row1, std::uint8_t& row0, int plane) {
  const auto& indexes = kOverlayIndexes[plane - 1];
  row0 = indexes[byte & 3];
  row1 = indexes[(byte >> 2) & 3];
  row2 = indexes[(byte >> 4) & 3];
  row3 = indexes[byte >> 6];
}

/// Paints a picture of 320 x 240 points: the base plane, over it overlay 2, over that overlay 1.
void paintDump(const DisplayDump& dump, const ScreenPalette& palette, toolkit::Picture& picture);

/// Of that picture `count` rows from `first` on, both multiples of four.
void paintRows(const DisplayDump& dump, const ScreenPalette& palette, int first, int count,
               toolkit::Picture& picture);

}  // namespace lumodevice::capture
