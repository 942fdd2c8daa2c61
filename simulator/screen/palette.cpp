#include "simulator/screen/palette.hpp"

namespace zansim {
namespace {

/// Red, green, blue.
constexpr Colour kPlain[] = {{0, 0, 0},       {0, 0, 0},       {255, 255, 0},   {255, 0, 80},
                             {0, 255, 255},   {102, 255, 102}, {102, 255, 102}, {255, 255, 255},
                             {136, 136, 136}, {34, 34, 136},   {0, 0, 85},      {187, 187, 187},
                             {153, 102, 51},  {136, 136, 136}, {255, 34, 34},   {255, 255, 255},
                             {89, 89, 89},    {0, 0, 255},     {0, 255, 0},     {255, 132, 0},
                             {192, 192, 192}, {255, 0, 0},     {0, 143, 0},     {0, 159, 0},
                             {7, 167, 7},     {23, 175, 23},   {39, 183, 39},   {55, 191, 55},
                             {71, 199, 71},   {87, 207, 87},   {103, 215, 103}, {119, 223, 119}};
constexpr Ink kFirstMixed = 32;
constexpr Ink kLastMixed = 56;
static_assert(sizeof kPlain / sizeof *kPlain == kFirstMixed);

}  // namespace

Colour paletteColour(Ink entry) {
  if (entry < kFirstMixed) {
    return kPlain[entry];
  }
  if (entry > kLastMixed) {
    return {};
  }
  const unsigned mixed = entry - kFirstMixed;
  return {static_cast<std::uint8_t>(mixed % 8 * 32),
          static_cast<std::uint8_t>(128 + mixed / 8 * 32), 0};
}

}  // namespace zansim
