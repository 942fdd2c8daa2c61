// Any bytes at all, repeated over a whole display dump: it is painted as it would be point by
// point.

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "lumodevice/capture/display_dump.hpp"
#include "tests/support/point_painter.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lumodevice;
  if (size == 0) return 0;
  static std::array<std::uint8_t, capture::DisplayDump::kSize> dump;
  for (std::size_t i = 0; i < dump.size(); ++i) {
    dump[i] = data[i % size];
  }
  capture::ScreenPalette palette{};
  capture::FillScreenPalette(palette);
  toolkit::Picture picture(capture::kScreenWidth, capture::kScreenHeight);
  capture::paintDump(capture::DisplayDump(dump), palette, picture);
  if (picture != support::paintPointByPoint(dump, palette)) {
    throw std::logic_error("another picture than painting point by point gives");
  }
  return 0;
}
