#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zansim::tests {

/// Blue, green, red.
using Bgr = std::array<std::uint8_t, 3>;
/// A picture row by row from its top left.
using Pixels = std::vector<Bgr>;

inline constexpr std::size_t kWidth = 320;
inline constexpr std::size_t kHeight = 240;

/// The palette as hosts know it.
[[nodiscard]] Bgr hostColour(std::size_t entry);
/// The picture that a host paints from the display memory.
[[nodiscard]] Pixels paintedFromPlanes(std::string_view planes);
/// The pixels of a bitmap of 320 x 240 with 24 bits each.
[[nodiscard]] Pixels readFromBitmap(std::string_view bitmap);

/// The data bytes of an answer that is one definite-length block; empty for another answer.
[[nodiscard]] std::string_view dataOf(std::string_view answer);

}  // namespace zansim::tests
