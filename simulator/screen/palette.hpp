#pragma once

#include <cstdint>

namespace zansim {

/// What a pixel holds: on the base layer an entry of the palette, on an overlay 0 to 3, where 0
/// lets through what lies below.
using Ink = std::uint8_t;

struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Colour&, const Colour&) = default;
};

/// The colour of an entry of the instrument's palette; those above 56 are black.
[[nodiscard]] Colour paletteColour(Ink entry);

/// The entries that the inks 1 to 3 of the overlays stand for.
inline constexpr Ink kOverlay1Entries[] = {0, 15, 11, 19};
inline constexpr Ink kOverlay2Entries[] = {0, 8, 7, 6};

/// Entries of the base layer by what they look like.
namespace ink {
inline constexpr Ink kBlack = 0;
inline constexpr Ink kYellow = 2;
inline constexpr Ink kWhite = 7;
inline constexpr Ink kGrey = 8;
inline constexpr Ink kNavy = 9;
inline constexpr Ink kDarkNavy = 10;
inline constexpr Ink kLightGrey = 11;
inline constexpr Ink kRed = 14;
inline constexpr Ink kDarkGrey = 16;
inline constexpr Ink kGreen = 18;
inline constexpr Ink kSilver = 20;
inline constexpr Ink kDarkGreen = 22;  ///< the first of ten greens that become paler
/// From dark green towards dark yellow in eight steps; of three brightnesses.
inline constexpr Ink kOliveRow = 32;
inline constexpr Ink kAmberRow = 40;
inline constexpr Ink kLimeRow = 48;
inline constexpr Ink kBrightGreen = 56;
}  // namespace ink

/// Inks of the overlays by what they look like.
namespace overlay1 {
inline constexpr Ink kWhite = 1;
inline constexpr Ink kLightGrey = 2;
inline constexpr Ink kOrange = 3;
}  // namespace overlay1
namespace overlay2 {
inline constexpr Ink kGrey = 1;
inline constexpr Ink kWhite = 2;
inline constexpr Ink kPaleGreen = 3;
}  // namespace overlay2

}  // namespace zansim
