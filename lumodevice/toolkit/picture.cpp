#include "lumodevice/toolkit/picture.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <string>

namespace lumodevice::toolkit {

namespace {

constexpr std::size_t kPointSize = 3;
constexpr std::size_t kFileHeaderSize = 14;
constexpr std::size_t kInfoHeaderSize = 40;
constexpr std::size_t kPaletteEntrySize = 4;
constexpr std::uint32_t kUncompressed = 0;

[[noreturn]] void refuse(const char* why) {
  throw PictureFault(kInvalidPicture, std::string("invalid picture: ") + why);
}

/// Rows of a bitmap are filled up to whole double words.
std::size_t strideOf(int width, std::size_t bitsPerPoint) {
  return (static_cast<std::size_t>(width) * bitsPerPoint + 31) / 32 * 4;
}

/// Bytes of a file in the little-endian order of the format.
class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> file) : file_(file) {}

  [[nodiscard]] std::uint32_t number(std::size_t at, std::size_t size) const {
    std::uint32_t value = 0;
    for (const std::uint8_t byte : bytes(at, size)) {
      value = (value >> 8) | (std::uint32_t{byte} << 24);
    }
    return value >> (8 * (4 - size));
  }
  [[nodiscard]] std::span<const std::uint8_t> bytes(std::size_t at, std::size_t size) const {
    if (at > file_.size() || size > file_.size() - at) {
      refuse("the file is cut short");
    }
    return file_.subspan(at, size);
  }

 private:
  std::span<const std::uint8_t> file_;
};

/// What the headers of a bitmap file say.
struct Layout {
  int width = 0;
  int height = 0;
  bool topDown = false;
  std::size_t bits = 0;
  std::span<const std::uint8_t> palette;
  std::span<const std::uint8_t> points;
  std::size_t stride = 0;
};

int sideOf(std::int64_t side) {
  if (side < 1 || side > Picture::kLargestSide) {
    refuse("its size");
  }
  return static_cast<int>(side);
}

Layout layoutOf(std::span<const std::uint8_t> file) {
  const Reader reader(file);
  Layout layout;
  const std::size_t infoSize = reader.number(kFileHeaderSize, 4);
  if (reader.number(0, 1) != 'B' || reader.number(1, 1) != 'M' || infoSize < kInfoHeaderSize) {
    refuse("not a Windows bitmap");
  }
  (void)reader.bytes(kFileHeaderSize, infoSize);  // what lies beyond it is found by its size
  const auto height = static_cast<std::int32_t>(reader.number(22, 4));
  layout.width = sideOf(static_cast<std::int32_t>(reader.number(18, 4)));
  layout.height = sideOf(height < 0 ? -std::int64_t{height} : height);
  layout.topDown = height < 0;
  layout.bits = reader.number(28, 2);
  constexpr std::array<std::size_t, 5> kKnown{1, 4, 8, 24, 32};
  if (std::ranges::find(kKnown, layout.bits) == kKnown.end() ||
      reader.number(30, 4) != kUncompressed) {
    refuse("a kind of bitmap that cannot be shown");
  }
  if (layout.bits <= 8) {
    const std::size_t all = std::size_t{1} << layout.bits;
    const std::size_t used = reader.number(46, 4);
    const std::size_t colours = used == 0 ? all : std::min(used, all);
    layout.palette = reader.bytes(kFileHeaderSize + infoSize, colours * kPaletteEntrySize);
  }
  layout.stride = strideOf(layout.width, layout.bits);
  layout.points =
      reader.bytes(reader.number(10, 4), layout.stride * static_cast<std::size_t>(layout.height));
  return layout;
}

/// The colour of point x of a row. A palette index without an entry is black.
Colour colourAt(const Layout& layout, std::span<const std::uint8_t> row, std::size_t x) {
  std::span<const std::uint8_t> entry;
  if (layout.bits > 8) {
    entry = row.subspan(x * layout.bits / 8, kPointSize);
  } else {
    const std::size_t bit = x * layout.bits;
    const std::size_t index =
        static_cast<std::size_t>(row[bit / 8] >> (8 - layout.bits - bit % 8)) &
        ((std::size_t{1} << layout.bits) - 1);
    if ((index + 1) * kPaletteEntrySize > layout.palette.size()) {
      return {};
    }
    entry = layout.palette.subspan(index * kPaletteEntrySize, kPointSize);
  }
  return {.red = entry[2], .green = entry[1], .blue = entry[0]};
}

void store(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) {
    bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
  }
}

}  // namespace

Picture::Picture(int width, int height)
    : width_(sideOf(width)), height_(sideOf(height)), stride_(strideOf(width, 8 * kPointSize)) {
  const std::size_t size = kHeaderSize + stride_ * static_cast<std::size_t>(height_);
  bitmap_.resize(size);
  bitmap_[0] = 'B';
  bitmap_[1] = 'M';
  store(bitmap_, 2, static_cast<std::uint32_t>(size));
  store(bitmap_, 10, kHeaderSize);
  store(bitmap_, 14, kInfoHeaderSize);
  store(bitmap_, 18, static_cast<std::uint32_t>(width_));
  store(bitmap_, 22, static_cast<std::uint32_t>(height_));
  bitmap_[26] = 1;  // planes
  bitmap_[28] = 8 * kPointSize;
  store(bitmap_, 34, static_cast<std::uint32_t>(size - kHeaderSize));
}

Picture Picture::fromBitmap(std::span<const std::uint8_t> file) {
  const Layout layout = layoutOf(file);
  Picture picture(layout.width, layout.height);
  for (int y = 0; y < layout.height; ++y) {
    const auto stored = static_cast<std::size_t>(layout.topDown ? y : layout.height - 1 - y);
    const auto row = layout.points.subspan(stored * layout.stride, layout.stride);
    for (int x = 0; x < layout.width; ++x) {
      picture.setPoint(x, y, colourAt(layout, row, static_cast<std::size_t>(x)));
    }
  }
  return picture;
}

Colour Picture::point(int x, int y) const {
  const auto bytes = row(y).subspan(static_cast<std::size_t>(x) * kPointSize, kPointSize);
  return {.red = bytes[2], .green = bytes[1], .blue = bytes[0]};
}

void Picture::setPoint(int x, int y, Colour colour) {
  const auto bytes = row(y).subspan(static_cast<std::size_t>(x) * kPointSize, kPointSize);
  bytes[0] = colour.blue;
  bytes[1] = colour.green;
  bytes[2] = colour.red;
}

std::span<std::uint8_t> Picture::row(int y) {
  return std::span(bitmap_).subspan(rowStart(y), static_cast<std::size_t>(width_) * kPointSize);
}

std::span<const std::uint8_t> Picture::row(int y) const {
  return std::span(bitmap_).subspan(rowStart(y), static_cast<std::size_t>(width_) * kPointSize);
}

}  // namespace lumodevice::toolkit
