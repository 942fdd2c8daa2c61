#include "lumodevice/capture/display_dump.hpp"

#include <bit>
#include <cstring>

namespace lumodevice::capture {

namespace {

/// Four rows of one column, from the top: what one overlay byte covers.
using FourRows = std::array<std::uint8_t, 4>;

/// What each overlay byte puts over the four rows below it: `indexes` where `keep` is 0.
struct OverlayTable {
  std::array<std::uint32_t, 256> indexes{};
  std::array<std::uint32_t, 256> keep{};
};

/// Overlays count their rows from the bottom, so row 3 is the topmost.
constexpr OverlayTable overlayTable(int plane) {
  OverlayTable table;
  for (std::size_t byte = 0; byte < table.indexes.size(); ++byte) {
    FourRows rows{};
    UnpackOverlayByte(static_cast<std::uint8_t>(byte), rows[0], rows[1], rows[2], rows[3], plane);
    FourRows keep{};
    for (std::size_t row = 0; row < rows.size(); ++row) {
      keep[row] = rows[row] == 0 ? 0xFF : 0;
    }
    table.indexes[byte] = std::bit_cast<std::uint32_t>(rows);
    table.keep[byte] = std::bit_cast<std::uint32_t>(keep);
  }
  return table;
}

constexpr OverlayTable kOverlay1 = overlayTable(1);
constexpr OverlayTable kOverlay2 = overlayTable(2);

/// Columns that are painted together: their dump bytes stay in the cache from row to row.
constexpr int kTile = 64;
static_assert(kScreenWidth % kTile == 0 && kScreenHeight % 4 == 0);

/// The bytes of a point as the picture stores them, filled up to a size that is moved at once.
using Point = std::array<std::uint8_t, 4>;
constexpr std::size_t kPointSize = 3;

}  // namespace

void DrawPalettePixel(toolkit::Picture& picture, const ScreenPalette& palette, int x, int y,
                      std::uint8_t index) {
  const BGR& colour = palette[index];
  picture.setPoint(x, y, {.red = colour.rgbRed, .green = colour.rgbGreen, .blue = colour.rgbBlue});
}

void paintDump(const DisplayDump& dump, const ScreenPalette& palette, toolkit::Picture& picture) {
  std::array<Point, 256> points{};
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i] = {palette[i].rgbBlue, palette[i].rgbGreen, palette[i].rgbRed, 0};
  }
  const auto base = dump.base();
  const auto overlay1 = dump.overlay(1);
  const auto overlay2 = dump.overlay(2);
  const auto pictureRow = [&](int y) { return picture.row(y).data(); };
  for (int right = kScreenWidth; right > 0; right -= kTile) {
    for (int top = 0; top < kScreenHeight; top += 4) {
      // Picture columns run against the dump's.
      const std::size_t left = static_cast<std::size_t>(kScreenWidth - right) * kPointSize;
      std::array<std::uint8_t*, 4> out{pictureRow(top) + left, pictureRow(top + 1) + left,
                                       pictureRow(top + 2) + left, pictureRow(top + 3) + left};
      const auto group = static_cast<std::size_t>((kScreenHeight - 4 - top) / 4) * kScreenWidth;
      for (int x = right - 1; x >= right - kTile; --x) {
        const auto column = static_cast<std::size_t>(x);
        std::uint32_t rows = 0;
        std::memcpy(&rows, &base[column * DisplayDump::kColumnSize + static_cast<std::size_t>(top)],
                    sizeof rows);
        const std::uint8_t above2 = overlay2[group + column];
        const std::uint8_t above1 = overlay1[group + column];
        rows = (rows & kOverlay2.keep[above2]) | kOverlay2.indexes[above2];
        rows = (rows & kOverlay1.keep[above1]) | kOverlay1.indexes[above1];
        const auto indexes = std::bit_cast<FourRows>(rows);
        for (std::size_t row = 0; row < indexes.size(); ++row) {
          std::memcpy(out[row], points[indexes[row]].data(), kPointSize);
          out[row] += kPointSize;
        }
      }
    }
  }
}

}  // namespace lumodevice::capture
