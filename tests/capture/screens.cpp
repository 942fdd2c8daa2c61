#include "tests/capture/screens.hpp"

#include <array>
#include <cstdio>
#include <random>
#include <span>

namespace lumodevice::capture {

namespace {

Bytes dumpOf(unsigned seed, unsigned values) {
  std::mt19937 random(seed);
  Bytes dump(kDumpSize);
  for (std::uint8_t& byte : dump) {
    byte = static_cast<std::uint8_t>(random() % values);
  }
  return dump;
}

}  // namespace

Bytes bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

std::string textOf(const Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

std::string block(std::string_view data) {
  const std::string length = std::to_string(data.size());
  std::string message = "#" + std::to_string(length.size()) + length;
  message.append(data).append("\n");
  return message;
}

DisplayDump planesOf(const Bytes& dump) {
  return DisplayDump(std::span<const std::uint8_t>(dump).first<DisplayDump::kSize>());
}

Bytes randomDump(unsigned seed) {
  return dumpOf(seed, 256);
}

Bytes colouredDump(unsigned seed) {
  return dumpOf(seed, 40);
}

toolkit::Picture pattern(int width, int height) {
  toolkit::Picture picture(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      picture.setPoint(x, y,
                       {.red = static_cast<std::uint8_t>(x + 1),
                        .green = static_cast<std::uint8_t>(y + 1),
                        .blue = static_cast<std::uint8_t>(x * y + 7)});
    }
  }
  return picture;
}

std::string points(const toolkit::Picture& picture) {
  std::string text;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const toolkit::Colour colour = picture.point(x, y);
      if (colour == toolkit::Colour{}) {
        continue;
      }
      std::array<char, 40> line{};
      (void)std::snprintf(line.data(), line.size(), "%d,%d %02X%02X%02X\n", x, y, colour.red,
                          colour.green, colour.blue);
      text += line.data();
    }
  }
  return text;
}

}  // namespace lumodevice::capture
