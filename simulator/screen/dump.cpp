#include "simulator/screen/dump.hpp"

#include <array>
#include <cstdint>

namespace zansim {
namespace {

constexpr int kPlaneRows = 256;
constexpr int kPixelsPerByte = 4;
constexpr unsigned kBitsPerPixel = 2;

char byteOf(unsigned value) {
  return static_cast<char>(static_cast<unsigned char>(value));
}

/// Where a column of the display memory is seen.
int seenAt(int column) {
  return kScreenWidth - 1 - column;
}

void appendBase(std::string& bytes, const Layer& base) {
  for (int column = 0; column < kScreenWidth; ++column) {
    for (int y = 0; y < kScreenHeight; ++y) {
      bytes += byteOf(base.at(seenAt(column), y));
    }
    bytes.append(kPlaneRows - kScreenHeight, '\0');
  }
}

void appendOverlay(std::string& bytes, const Layer& overlay) {
  for (int row = 0; row < kScreenHeight; row += kPixelsPerByte) {
    for (int column = 0; column < kScreenWidth; ++column) {
      unsigned packed = 0;
      for (int i = 0; i < kPixelsPerByte; ++i) {
        const unsigned pixel = overlay.at(seenAt(column), kScreenHeight - 1 - row - i);
        packed |= pixel << kBitsPerPixel * static_cast<unsigned>(i);
      }
      bytes += byteOf(packed);
    }
  }
  bytes.append(kScreenWidth * (kPlaneRows - kScreenHeight) / kPixelsPerByte, '\0');
}

void appendNumber(std::string& bytes, std::uint32_t number, int size) {
  for (int i = 0; i < size; ++i) {
    bytes += byteOf(number >> 8U * static_cast<unsigned>(i) & 0xFFU);
  }
}

/// The headers of file and picture: one plane of 24 bits a pixel, not compressed.
void appendBitmapHeader(std::string& bytes) {
  constexpr std::uint32_t kInfoSize = 40;
  bytes += "BM";
  appendNumber(bytes, kBitmapSize, 4);
  appendNumber(bytes, 0, 4);
  appendNumber(bytes, kBitmapHeaderSize, 4);
  appendNumber(bytes, kInfoSize, 4);
  appendNumber(bytes, kScreenWidth, 4);
  appendNumber(bytes, kScreenHeight, 4);
  appendNumber(bytes, 1, 2);
  appendNumber(bytes, 24, 2);
  appendNumber(bytes, 0, 4);
  appendNumber(bytes, kBitmapSize - kBitmapHeaderSize, 4);
  bytes.append(16, '\0');  // no resolution, no palette
}

}  // namespace

std::string planes(const Picture& picture) {
  std::string bytes;
  bytes.reserve(kPlanesSize);
  appendBase(bytes, picture.base);
  appendOverlay(bytes, picture.overlay1);
  appendOverlay(bytes, picture.overlay2);
  return bytes;
}

std::string bitmap(const Picture& picture) {
  std::string bytes;
  bytes.reserve(kBitmapSize);
  appendBitmapHeader(bytes);
  for (int y = kScreenHeight - 1; y >= 0; --y) {
    for (int x = 0; x < kScreenWidth; ++x) {
      const Colour colour = picture.colour(x, y);
      bytes += {byteOf(colour.blue), byteOf(colour.green), byteOf(colour.red)};
    }
  }
  return bytes;
}

}  // namespace zansim
