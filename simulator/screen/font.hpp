#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace zansim {

/// A letter of the small font: five pixels wide, seven high and one more below the line; the
/// leftmost pixel of a row is bit 4.
using Glyph = std::array<std::uint8_t, 8>;
inline constexpr int kGlyphWidth = 5;
inline constexpr int kGlyphAdvance = 6;
inline constexpr int kGlyphHeight = 7;  ///< of capitals and digits

/// Two signs that ASCII lacks, as the screen's texts write them.
inline constexpr std::string_view kOhm = "\x7F";
inline constexpr std::string_view kAmperesPerMicrosecond = "A/\x80s";

/// A full block for a character that the font does not have.
[[nodiscard]] const Glyph& glyph(char character);

}  // namespace zansim
