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

/// Two neighbouring points are stored at once, with two bytes to spare: blue, green and red of each
/// in the order in which this machine lays the bytes of a word out.
constexpr bool kLittleEndian = std::endian::native == std::endian::little;
constexpr unsigned kLeftShift = kLittleEndian ? 0 : 40;
constexpr unsigned kRightShift = kLittleEndian ? 24 : 16;
constexpr std::size_t kPairSize = 6;

using Points = std::array<std::uint64_t, 256>;

Points pointsOf(const ScreenPalette& palette) {
  Points points{};
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::uint64_t blue = palette[i].rgbBlue;
    const std::uint64_t green = palette[i].rgbGreen;
    const std::uint64_t red = palette[i].rgbRed;
    points[i] = kLittleEndian ? blue | green << 8 | red << 16 : blue << 16 | green << 8 | red;
  }
  return points;
}

/// The palette index of a row among the four of a word as it stands in memory.
constexpr std::uint8_t indexOf(std::uint32_t rows, std::size_t row) {
  return static_cast<std::uint8_t>(rows >> 8 * (kLittleEndian ? row : 3 - row));
}

/// Where the next points of four rows go.
using FourPlaces = std::array<std::uint8_t*, 4>;

/// Puts `Size` bytes of a pair into each of the four rows. The bytes beyond a pair belong to the
/// next one, which is painted over them: only at the end of a row they must be left alone.
template <std::size_t Size>
void put(const Points& points, std::uint32_t left, std::uint32_t right, FourPlaces& places) {
  for (std::size_t row = 0; row < places.size(); ++row) {
    const std::uint64_t pair =
        points[indexOf(left, row)] << kLeftShift | points[indexOf(right, row)] << kRightShift;
    std::memcpy(places[row], &pair, Size);
    places[row] += kPairSize;
  }
}

static_assert(kScreenHeight % 4 == 0 && kScreenWidth % 2 == 0);

}  // namespace

std::optional<DisplayDump> dumpIn(std::span<const std::uint8_t> file) {
  const bool headed = file.size() >= kDumpHeader.size() &&
                      std::memcmp(file.data(), kDumpHeader.data(), kDumpHeader.size()) == 0;
  const auto dump = file.subspan(headed ? kDumpHeader.size() : 0);
  if (dump.size() < DisplayDump::kSize) {
    return std::nullopt;
  }
  return DisplayDump(dump.first<DisplayDump::kSize>());
}

void paintDump(const DisplayDump& dump, const ScreenPalette& palette, toolkit::Picture& picture) {
  paintRows(dump, palette, 0, kScreenHeight, picture);
}

void paintRows(const DisplayDump& dump, const ScreenPalette& palette, int first, int count,
               toolkit::Picture& picture) {
  const Points points = pointsOf(palette);
  const auto base = dump.base();
  const auto overlay1 = dump.overlay(1);
  const auto overlay2 = dump.overlay(2);
  for (int top = first; top < first + count; top += 4) {
    const auto firstRow = static_cast<std::size_t>(top);
    const auto group = static_cast<std::size_t>((kScreenHeight - 4 - top) / 4) * kScreenWidth;
    const auto column = [&](std::size_t x) {
      std::uint32_t rows = 0;
      std::memcpy(&rows, &base[x * DisplayDump::kColumnSize + firstRow], sizeof rows);
      const std::uint8_t above2 = overlay2[group + x];
      const std::uint8_t above1 = overlay1[group + x];
      if ((above1 | above2) != 0) {  // most of a screen has nothing above its base
        rows = (rows & kOverlay2.keep[above2]) | kOverlay2.indexes[above2];
        rows = (rows & kOverlay1.keep[above1]) | kOverlay1.indexes[above1];
      }
      return rows;
    };
    FourPlaces places{picture.row(top).data(), picture.row(top + 1).data(),
                      picture.row(top + 2).data(), picture.row(top + 3).data()};
    // Picture columns run against the dump's.
    for (std::size_t x = kScreenWidth - 1; x > 1; x -= 2) {
      put<sizeof(std::uint64_t)>(points, column(x), column(x - 1), places);
    }
    put<kPairSize>(points, column(1), column(0), places);
  }
}

}  // namespace lumodevice::capture
