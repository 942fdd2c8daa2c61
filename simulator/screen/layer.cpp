#include "simulator/screen/layer.hpp"

#include <algorithm>
#include <cstddef>

#include "simulator/screen/font.hpp"

namespace zansim {
namespace {

/// Where a text of this width starts in a field. One that is too wide shows its beginning.
int startOf(const Box& field, Align align, int width) {
  const int free = std::max(field.width - width, 0);
  switch (align) {
    case Align::Left:
      return field.left;
    case Align::Centre:
      return field.left + free / 2;
    case Align::Right:
      return field.left + free;
  }
  return field.left;
}

int widthOf(std::string_view text, Face face) {
  int width = 0;
  int gap = 0;
  for (const char c : text) {
    const StrokeGlyph& letter = strokeGlyph(face, c);
    width += letter.advance;
    gap = letter.advance - letter.width;
  }
  return width - gap;
}

}  // namespace

void Layer::fill(const Box& box, Ink ink) {
  const int left = std::clamp(box.left, 0, kScreenWidth);
  const int right = std::clamp(box.left + box.width, left, kScreenWidth);
  const int top = std::clamp(box.top, 0, kScreenHeight);
  const int bottom = std::clamp(box.top + box.height, top, kScreenHeight);
  for (int y = top; y < bottom; ++y) {
    const auto row = inks_.begin() + std::ptrdiff_t{y} * kScreenWidth;
    std::fill(row + left, row + right, ink);
  }
}

void Layer::frame(const Box& box, Ink ink) {
  fill({box.left, box.top, box.width, 1}, ink);
  fill({box.left, box.top + box.height - 1, box.width, 1}, ink);
  fill({box.left, box.top, 1, box.height}, ink);
  fill({box.left + box.width - 1, box.top, 1, box.height}, ink);
}

void Layer::fillRound(const Box& box, Ink ink) {
  fill({box.left + 2, box.top, box.width - 4, box.height}, ink);
  fill({box.left + 1, box.top + 1, box.width - 2, box.height - 2}, ink);
  fill({box.left, box.top + 2, box.width, box.height - 4}, ink);
}

void Layer::frameRound(const Box& box, Ink ink) {
  const int right = box.left + box.width - 1;
  const int bottom = box.top + box.height - 1;
  fill({box.left + 2, box.top, box.width - 4, 1}, ink);
  fill({box.left + 2, bottom, box.width - 4, 1}, ink);
  fill({box.left, box.top + 2, 1, box.height - 4}, ink);
  fill({right, box.top + 2, 1, box.height - 4}, ink);
  for (const int x : {box.left + 1, right - 1}) {
    put(x, box.top + 1, ink);
    put(x, bottom - 1, ink);
  }
}

void Layer::write(const Box& field, Align align, std::string_view text, Ink ink) {
  const int width = static_cast<int>(text.size()) * kGlyphAdvance - 1;
  const int top = field.top + (field.height - kGlyphHeight) / 2;
  int left = startOf(field, align, width);
  for (const char c : text) {
    if (left >= field.left + field.width) {
      return;
    }
    const Glyph& rows = glyph(c);
    for (std::size_t y = 0; y < rows.size(); ++y) {
      for (int x = 0; x < kGlyphWidth; ++x) {
        if ((rows[y] >> static_cast<unsigned>(kGlyphWidth - 1 - x) & 1U) != 0) {
          putWithin(field, left + x, top + static_cast<int>(y), ink);
        }
      }
    }
    left += kGlyphAdvance;
  }
}

void Layer::writeLarge(const Box& field, Align align, std::string_view text, Face face,
                       const Ramp& ramp) {
  const int top = field.top + (field.height - faceHeight(face)) / 2;
  int left = startOf(field, align, widthOf(text, face));
  for (const char c : text) {
    const StrokeGlyph& letter = strokeGlyph(face, c);
    for (std::size_t i = 0; i < letter.coverage.size(); ++i) {
      const std::uint8_t quarters = letter.coverage[i];
      if (quarters != 0 && ramp[quarters - 1U]) {
        const int at = static_cast<int>(i);
        putWithin(field, left + at % letter.width, top + at / letter.width, *ramp[quarters - 1U]);
      }
    }
    left += letter.advance;
  }
}

}  // namespace zansim
