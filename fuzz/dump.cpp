// Any bytes at all, repeated over a whole display dump: it is painted as it would be point by
// point. Of each picture the points of four rows and the ends of all others are looked at: another
// input looks at another four.

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
  capture::paintDump(capture::DisplayDump(dump), palette, picture);

  const auto check = [](int x, int y) {
    fuzz::require(picture.point(x, y) == support::pointOf(dump, palette, x, y),
                  "a point is painted as by itself");
  };
  const int band = data[size - 1] % (kScreenHeight / 4) * 4;
  for (int y = 0; y < kScreenHeight; ++y) {
    const bool whole = y / 4 == band / 4;
    for (int x = 0; x < kScreenWidth; x += whole ? 1 : kScreenWidth - 1) check(x, y);
  }
  const auto headerOf = [](const toolkit::Picture& of) {
    return of.bitmap().first(toolkit::Picture::kHeaderSize);
  };
  fuzz::require(std::ranges::equal(headerOf(picture), headerOf(black)), "the header stays");
  return 0;
}
