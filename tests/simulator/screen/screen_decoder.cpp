#include "tests/simulator/screen/screen_decoder.hpp"

#include <cstddef>
#include <string>

namespace zansim::tests {
namespace {

constexpr std::size_t kBasePlane = std::size_t{320} * 256;
constexpr std::size_t kOverlayPlane = std::size_t{320} * 64;

/// Six hexadecimal digits an entry: blue, green, red.
constexpr std::string_view kEntries =
    "00000000000000FFFF5000FFFFFF0066FF6666FF66FFFFFF888888882222550000BBBBBB336699888888"
    "2222FFFFFFFF595959FF000000FF000084FFC0C0C00000FF008F00009F0007A70717AF1727B72737BF37"
    "47C74757CF5767D76777DF77";

std::uint8_t byteAt(std::string_view bytes, std::size_t at) {
  return static_cast<std::uint8_t>(bytes[at]);
}

void paintOverlay(Pixels& pixels, std::string_view plane, const std::size_t (&entries)[4]) {
  for (std::size_t column = 0; column < kWidth; ++column) {
    for (std::size_t y = 0; y < kHeight; ++y) {
      const std::size_t row = 239 - y;
      const unsigned packed = byteAt(plane, row / 4 * 320 + column);
      const unsigned value = packed >> (2 * (row % 4)) & 3U;
      if (value != 0) {
        pixels[y * kWidth + 319 - column] = hostColour(entries[value]);
      }
    }
  }
}

}  // namespace

Bgr hostColour(std::size_t entry) {
  if (entry < 32) {
    const auto part = [&](std::size_t index) {
      return static_cast<std::uint8_t>(
          std::stoul(std::string(kEntries.substr(entry * 6 + index * 2, 2)), nullptr, 16));
    };
    return {part(0), part(1), part(2)};
  }
  if (entry <= 56) {
    const std::size_t a = (entry - 32) / 8;
    const std::size_t b = (entry - 32) % 8;
    return {0, static_cast<std::uint8_t>(128 + 32 * a), static_cast<std::uint8_t>(32 * b)};
  }
  return {0, 0, 0};
}

Pixels paintedFromPlanes(std::string_view planes) {
  Pixels pixels(kWidth * kHeight);
  for (std::size_t column = 0; column < kWidth; ++column) {
    for (std::size_t y = 0; y < kHeight; ++y) {
      pixels[y * kWidth + 319 - column] = hostColour(byteAt(planes, column * 256 + y));
    }
  }
  paintOverlay(pixels, planes.substr(kBasePlane + kOverlayPlane), {0, 8, 7, 6});
  paintOverlay(pixels, planes.substr(kBasePlane, kOverlayPlane), {0, 15, 11, 19});
  return pixels;
}

Pixels readFromBitmap(std::string_view bitmap) {
  Pixels pixels;
  for (std::size_t y = 0; y < kHeight; ++y) {
    for (std::size_t x = 0; x < kWidth; ++x) {
      const std::size_t at = 54 + (239 - y) * 960 + x * 3;
      pixels.push_back({byteAt(bitmap, at), byteAt(bitmap, at + 1), byteAt(bitmap, at + 2)});
    }
  }
  return pixels;
}

std::string_view dataOf(std::string_view answer) {
  if (answer.size() < 8 || answer.substr(0, 2) != "#6") {
    return {};
  }
  const std::size_t size = std::stoul(std::string(answer.substr(2, 6)));
  return size + 8 == answer.size() ? answer.substr(8) : std::string_view();
}

}  // namespace zansim::tests
