// Any bytes at all, repeated over a whole display dump: it is painted as it would be point by
// point. Of each picture forty-eight rows are painted, and of these the points of the first four
// and the ends of the others looked at: another input paints others.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "fuzz/require.hpp"
#include "lumodevice/capture/display_dump.hpp"
#include "tests/support/point_painter.hpp"

namespace {

using namespace lumodevice;
using capture::kScreenHeight;
using capture::kScreenWidth;

constexpr int kRows = 48;
static_assert(kScreenHeight % kRows == 0);

std::array<std::uint8_t, capture::DisplayDump::kSize> dump;

/// Copies what is there behind itself, until the dump is full.
void fillWith(std::span<const std::uint8_t> bytes) {
  std::size_t filled = std::min(bytes.size(), dump.size());
  std::copy_n(bytes.begin(), filled, dump.begin());
  while (filled < dump.size()) {
    const std::size_t more = std::min(filled, dump.size() - filled);
    std::copy_n(dump.begin(), more, dump.begin() + static_cast<std::ptrdiff_t>(filled));
    filled += more;
  }
}

capture::ScreenPalette screenPalette() {
  capture::ScreenPalette palette{};
  capture::FillScreenPalette(palette);
  return palette;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const capture::ScreenPalette palette = screenPalette();
  static const toolkit::Picture black(kScreenWidth, kScreenHeight);
  static toolkit::Picture picture = black;
  if (size == 0) return 0;
  fillWith(std::span(data, size));
  const int first = data[size - 1] % (kScreenHeight / kRows) * kRows;
  capture::paintRows(capture::DisplayDump(dump), palette, first, kRows, picture);

  for (int y = first; y < first + kRows; ++y) {
    const bool whole = y < first + 4;
    for (int x = 0; x < kScreenWidth; x += whole ? 1 : kScreenWidth - 1) {
      fuzz::require(picture.point(x, y) == support::pointOf(dump, palette, x, y),
                    "a point is painted as by itself");
    }
  }
  const auto headerOf = [](const toolkit::Picture& of) {
    return of.bitmap().first(toolkit::Picture::kHeaderSize);
  };
  fuzz::require(std::ranges::equal(headerOf(picture), headerOf(black)), "the header stays");
  return 0;
}
