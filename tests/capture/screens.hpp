#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/capture/display_dump.hpp"
#include "lumodevice/toolkit/picture.hpp"

/// Screens as an instrument would send them, and how tests look at them.
namespace lumodevice::capture {

using Bytes = std::vector<std::uint8_t>;

inline constexpr std::size_t kDumpSize = 122880;

[[nodiscard]] Bytes bytesOf(std::string_view text);
[[nodiscard]] std::string textOf(const Bytes& bytes);

/// "#", one digit, the length, the data, a line feed.
[[nodiscard]] std::string block(std::string_view data);

/// The planes of a dump; it must outlive them.
[[nodiscard]] DisplayDump planesOf(const Bytes& dump);

/// A dump with any bytes in all planes.
[[nodiscard]] Bytes randomDump(unsigned seed);
/// A dump that holds no more different bytes than a screen has colours.
[[nodiscard]] Bytes colouredDump(unsigned seed);

/// A file of 24 bits to the point with a pattern of its own.
[[nodiscard]] toolkit::Picture pattern(int width, int height);

/// The points of a picture that are not black, one a line: "319,0 FFFF00" (red, green, blue).
[[nodiscard]] std::string points(const toolkit::Picture& picture);

}  // namespace lumodevice::capture
