#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "lumodevice/export.hpp"
#include "lumodevice/text/fault.hpp"

namespace lumodevice::toolkit {

/// Bytes that are no picture which can be shown (number 481).
class LUMODEVICE_API PictureFault : public Fault {
 public:
  using Fault::Fault;
};
inline constexpr int kInvalidPicture = 481;

struct LUMODEVICE_API Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Colour&, const Colour&) = default;
};

/// A picture of true colours. It is kept as the Windows bitmap that it is saved as: 24 bits to the
/// point, rows from the bottom up, each filled up to a multiple of four bytes.
///
///     toolkit::Picture flag(3, 1);
///     flag.setPoint(0, 0, {.red = 255});
///     const std::span<const std::uint8_t> bytes = flag.bitmap();  // of a .bmp file
class LUMODEVICE_API Picture {
 public:
  static constexpr std::size_t kHeaderSize = 54;
  static constexpr int kLargestSide = 4096;

  /// No picture: 0 by 0 points.
  Picture() = default;
  /// All points black. Throws PictureFault for sides outside 1 to 4096.
  Picture(int width, int height);

  /// Reads an uncompressed Windows bitmap with 1, 4, 8, 24 or 32 bits to the point, in either row
  /// order. Throws PictureFault for anything else and for one that is cut short.
  [[nodiscard]] static Picture fromBitmap(std::span<const std::uint8_t> file);

  [[nodiscard]] bool empty() const { return bitmap_.empty(); }
  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }

  /// x from the left, y from the top; both must lie inside.
  [[nodiscard]] Colour point(int x, int y) const;
  void setPoint(int x, int y, Colour colour);

  /// The points of row y from the left, three bytes each: blue, green, red.
  [[nodiscard]] std::span<std::uint8_t> row(int y);
  [[nodiscard]] std::span<const std::uint8_t> row(int y) const;

  /// The whole bitmap file; no bytes for no picture.
  [[nodiscard]] std::span<const std::uint8_t> bitmap() const { return bitmap_; }

  friend bool operator==(const Picture&, const Picture&) = default;

 private:
  [[nodiscard]] std::size_t rowStart(int y) const {
    return kHeaderSize + static_cast<std::size_t>(height_ - 1 - y) * stride_;
  }

  int width_ = 0;
  int height_ = 0;
  std::size_t stride_ = 0;  ///< bytes from row to row
  std::vector<std::uint8_t> bitmap_;
};

}  // namespace lumodevice::toolkit
