#pragma once

#include <cstddef>
#include <string>

#include "simulator/screen/screen.hpp"

namespace zansim {

/// Bytes of the display memory: a base plane of 320 columns with 256 bytes each, two overlay planes
/// of 64 row groups with 320 bytes each.
inline constexpr std::size_t kBasePlaneSize = 81920;
inline constexpr std::size_t kOverlayPlaneSize = 20480;
inline constexpr std::size_t kPlanesSize = kBasePlaneSize + 2 * kOverlayPlaneSize;
/// Bytes of the picture as a Windows bitmap of 24 bits a pixel.
inline constexpr std::size_t kBitmapHeaderSize = 54;
inline constexpr std::size_t kBitmapSize = kBitmapHeaderSize + 230400;

/// The display memory: base plane, overlay 1, overlay 2. All of them run from right to left; the
/// overlays, four pixels to a byte, also from the bottom up.
[[nodiscard]] std::string planes(const Picture& picture);
[[nodiscard]] std::string bitmap(const Picture& picture);

}  // namespace zansim
