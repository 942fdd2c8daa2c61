#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "simulator/screen/palette.hpp"
#include "simulator/screen/strokes.hpp"

namespace zansim {

inline constexpr int kScreenWidth = 320;
inline constexpr int kScreenHeight = 240;

struct Box {
  int left;
  int top;
  int width;
  int height;
  [[nodiscard]] bool contains(int x, int y) const {
    return x >= left && x < left + width && y >= top && y < top + height;
  }
};
inline constexpr Box kWholeScreen{0, 0, kScreenWidth, kScreenHeight};

enum class Align : std::uint8_t { Left, Centre, Right };

/// What paints a pixel of the large font that is covered by one to four quarters; nothing leaves it
/// as it is.
using Ramp = std::array<std::optional<Ink>, StrokeGlyph::kFull>;
/// Paints what is covered by half, for layers that have no shades.
constexpr Ramp hard(Ink ink) {
  return {std::nullopt, ink, ink, ink};
}

/// One of the screen's layers, upright: x to the right, y down from the top. Whatever is drawn
/// outside of it is left out.
class Layer {
 public:
  Layer() : inks_(std::size_t{kScreenWidth} * kScreenHeight, 0) {}

  /// `x` below kScreenWidth and `y` below kScreenHeight, none negative.
  [[nodiscard]] Ink at(int x, int y) const { return inks_[index(x, y)]; }

  void put(int x, int y, Ink ink) {
    if (kWholeScreen.contains(x, y)) {
      inks_[index(x, y)] = ink;
    }
  }
  void fill(const Box& box, Ink ink);
  void frame(const Box& box, Ink ink);
  /// With the corners taken off.
  void fillRound(const Box& box, Ink ink);
  void frameRound(const Box& box, Ink ink);

  /// One line of text, in the middle of the field's height; what is too long for the field is cut
  /// at its edges.
  void write(const Box& field, Align align, std::string_view text, Ink ink);
  void writeLarge(const Box& field, Align align, std::string_view text, Face face,
                  const Ramp& ramp);

 private:
  static std::size_t index(int x, int y) {
    return static_cast<std::size_t>(y) * kScreenWidth + static_cast<std::size_t>(x);
  }
  void putWithin(const Box& field, int x, int y, Ink ink) {
    if (field.contains(x, y)) {
      put(x, y, ink);
    }
  }

  std::vector<Ink> inks_;
};

}  // namespace zansim
