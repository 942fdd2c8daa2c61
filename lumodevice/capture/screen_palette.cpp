#include "lumodevice/capture/screen_palette.hpp"

#include <algorithm>
#include <cstddef>

namespace lumodevice::capture {

namespace {

/// Blue, green, red.
constexpr BGR kNamed[] = {{0, 0, 0},       {0, 0, 0},       {0, 255, 255},   {80, 0, 255},
                          {255, 255, 0},   {102, 255, 102}, {102, 255, 102}, {255, 255, 255},
                          {136, 136, 136}, {136, 34, 34},   {85, 0, 0},      {187, 187, 187},
                          {51, 102, 153},  {136, 136, 136}, {34, 34, 255},   {255, 255, 255},
                          {89, 89, 89},    {255, 0, 0},     {0, 255, 0},     {0, 132, 255},
                          {192, 192, 192}, {0, 0, 255},     {0, 143, 0},     {0, 159, 0},
                          {7, 167, 7},     {23, 175, 23},   {39, 183, 39},   {55, 191, 55},
                          {71, 199, 71},   {87, 207, 87},   {103, 215, 103}, {119, 223, 119}};
constexpr std::size_t kRampStart = std::size(kNamed);  // 32
constexpr std::size_t kLastColour = 56;

/// From dark to bright green in four steps of green, each in eight steps of red.
constexpr BGR ramp(std::size_t step) {
  return {.rgbBlue = 0,
          .rgbGreen = static_cast<std::uint8_t>(128 + 32 * (step / 8)),
          .rgbRed = static_cast<std::uint8_t>(32 * (step % 8))};
}

}  // namespace

void FillScreenPalette(ScreenPalette& palette) {
  palette.fill({});
  std::ranges::copy(kNamed, palette.begin());
  for (std::size_t entry = kRampStart; entry <= kLastColour; ++entry) {
    palette[entry] = ramp(entry - kRampStart);
  }
}

}  // namespace lumodevice::capture
