#pragma once

#include <cstdint>
#include <vector>

namespace zansim {

/// Sizes of the large font, which is drawn with a round pen.
enum class Face : std::uint8_t { Badge, Unit, Reading };

/// How much of each pixel the pen covers.
struct StrokeGlyph {
  static constexpr std::uint8_t kFull = 4;
  int width = 0;
  int advance = 0;                     ///< to the next letter
  std::vector<std::uint8_t> coverage;  ///< row by row, 0 to kFull
};

/// The height of the capitals and digits of a face, in pixels.
[[nodiscard]] int faceHeight(Face face);

/// Digits are all as wide as each other. There are digits, capital letters and ".-+/%"; all else is
/// a blank.
[[nodiscard]] const StrokeGlyph& strokeGlyph(Face face, char character);

}  // namespace zansim
