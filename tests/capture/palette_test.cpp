#include <gtest/gtest.h>

#include "lumodevice/capture/screen_palette.hpp"

namespace lumodevice::capture {
namespace {

/// Blue, green, red of the entries from 0 on.
constexpr int kColours[][3] = {
    {0, 0, 0},       {0, 0, 0},       {0, 255, 255},   {80, 0, 255},    {255, 255, 0},
    {102, 255, 102}, {102, 255, 102}, {255, 255, 255}, {136, 136, 136}, {136, 34, 34},
    {85, 0, 0},      {187, 187, 187}, {51, 102, 153},  {136, 136, 136}, {34, 34, 255},
    {255, 255, 255}, {89, 89, 89},    {255, 0, 0},     {0, 255, 0},     {0, 132, 255},
    {192, 192, 192}, {0, 0, 255},     {0, 143, 0},     {0, 159, 0},     {7, 167, 7},
    {23, 175, 23},   {39, 183, 39},   {55, 191, 55},   {71, 199, 71},   {87, 207, 87},
    {103, 215, 103}, {119, 223, 119}, {0, 128, 0},     {0, 128, 32},    {0, 128, 64},
    {0, 128, 96},    {0, 128, 128},   {0, 128, 160},   {0, 128, 192},   {0, 128, 224},
    {0, 160, 0},     {0, 160, 32},    {0, 160, 64},    {0, 160, 96},    {0, 160, 128},
    {0, 160, 160},   {0, 160, 192},   {0, 160, 224},   {0, 192, 0},     {0, 192, 32},
    {0, 192, 64},    {0, 192, 96},    {0, 192, 128},   {0, 192, 160},   {0, 192, 192},
    {0, 192, 224},   {0, 224, 0},
};
constexpr std::size_t kCount = std::size(kColours);

void expectColours(const ScreenPalette& palette) {
  for (std::size_t entry = 0; entry < palette.size(); ++entry) {
    const bool coloured = entry < kCount;
    EXPECT_EQ(palette[entry].rgbBlue, coloured ? kColours[entry][0] : 0) << entry;
    EXPECT_EQ(palette[entry].rgbGreen, coloured ? kColours[entry][1] : 0) << entry;
    EXPECT_EQ(palette[entry].rgbRed, coloured ? kColours[entry][2] : 0) << entry;
  }
}

TEST(ScreenPalette, HasTheScreensColoursAndBlack) {
  static_assert(kCount == 57);
  ScreenPalette palette{};
  FillScreenPalette(palette);
  expectColours(palette);
}

TEST(ScreenPalette, FillingItReplacesWhateverWasThere) {
  ScreenPalette palette{};
  palette.fill({.rgbBlue = 1, .rgbGreen = 2, .rgbRed = 3});
  FillScreenPalette(palette);
  expectColours(palette);
}

}  // namespace
}  // namespace lumodevice::capture
