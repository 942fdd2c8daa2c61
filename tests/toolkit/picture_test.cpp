#include "lumodevice/toolkit/picture.hpp"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace lumodevice::toolkit {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::array<std::uint16_t, 5> kDepths{1, 4, 8, 24, 32};
constexpr Colour kBlack;
constexpr Colour kRed{.red = 255, .green = 0, .blue = 0};
constexpr Colour kMixed{.red = 1, .green = 2, .blue = 3};

void append(Bytes& bytes, std::uint32_t number, int size) {
  for (int i = 0; i < size; ++i) {
    bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
  }
}

/// A bitmap file as its fields say, however little sense they make.
struct BitmapFile {
  std::int32_t width = 1;
  std::int32_t height = 1;
  std::uint16_t bits = 24;
  std::uint32_t compression = 0;
  std::uint32_t colours = 0;
  std::uint32_t infoSize = 40;
  std::uint32_t gap = 0;  ///< bytes between headers and points
  Bytes palette = {};     ///< blue, green, red, 0 each
  Bytes points = {};      ///< as stored

  [[nodiscard]] Bytes bytes() const {
    Bytes file{'B', 'M'};
    const auto start = static_cast<std::uint32_t>(14 + infoSize + palette.size()) + gap;
    append(file, static_cast<std::uint32_t>(start + points.size()), 4);
    append(file, 0, 4);
    append(file, start, 4);
    append(file, infoSize, 4);
    append(file, static_cast<std::uint32_t>(width), 4);
    append(file, static_cast<std::uint32_t>(height), 4);
    append(file, 1, 2);
    append(file, bits, 2);
    append(file, compression, 4);
    append(file, 0, 4);
    append(file, 0, 4);
    append(file, 0, 4);
    append(file, colours, 4);
    append(file, 0, 4);
    file.resize(14 + std::size_t{std::min(infoSize, 1000U)});
    file.insert(file.end(), palette.begin(), palette.end());
    file.resize(file.size() + gap);
    file.insert(file.end(), points.begin(), points.end());
    return file;
  }
  [[nodiscard]] Picture picture() const { return Picture::fromBitmap(bytes()); }
};

/// The number of the fault, 0 when there is a picture.
int refusal(const Bytes& file) {
  try {
    (void)Picture::fromBitmap(file);
    return 0;
  } catch (const PictureFault& fault) {
    return fault.number();
  }
}
int refusal(const BitmapFile& file) {
  return refusal(file.bytes());
}

std::vector<Colour> row(const Picture& picture, int y) {
  std::vector<Colour> colours;
  for (int x = 0; x < picture.width(); ++x) {
    colours.push_back(picture.point(x, y));
  }
  return colours;
}

Bytes copy(std::span<const std::uint8_t> bytes) {
  return {bytes.begin(), bytes.end()};
}

TEST(Picture, IsAWindowsBitmapOf24BitsToThePoint) {
  const Bytes header{'B',  'M', 0x36, 0x84, 3,   0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0,
                     0x40, 1,   0,    0,    240, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0,  0, 0, 0x84,
                     3,    0,   0,    0,    0,   0, 0, 0, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0};
  const Picture picture(320, 240);
  ASSERT_EQ(picture.bitmap().size(), 230454U);
  EXPECT_EQ(copy(picture.bitmap().first(54)), header);
}

TEST(Picture, KeepsItsRowsFromTheBottomUpAndItsColoursBlueFirst) {
  Picture picture(320, 240);
  picture.setPoint(0, 239, kMixed);
  picture.setPoint(319, 0, kRed);
  const auto file = picture.bitmap();
  EXPECT_EQ(copy(file.subspan(54, 4)), (Bytes{3, 2, 1, 0}));
  EXPECT_EQ(copy(file.last(4)), (Bytes{0, 0, 0, 255}));
}

TEST(Picture, FillsItsRowsUpToFourBytes) {
  for (const auto& [width, stride] : {std::pair{1, 4}, {2, 8}, {3, 12}, {4, 12}, {5, 16}}) {
    Picture picture(width, 2);
    EXPECT_EQ(picture.bitmap().size(), static_cast<std::size_t>(54 + 2 * stride));
    picture.setPoint(0, 0, kMixed);
    EXPECT_EQ(picture.bitmap()[static_cast<std::size_t>(54 + stride)], 3);
  }
}

TEST(Picture, APointIsWhatItWasSetTo) {
  Picture picture(3, 2);
  picture.setPoint(2, 1, kMixed);
  picture.setPoint(0, 0, kRed);
  EXPECT_EQ(row(picture, 0), (std::vector<Colour>{kRed, kBlack, kBlack}));
  EXPECT_EQ(row(picture, 1), (std::vector<Colour>{kBlack, kBlack, kMixed}));
  EXPECT_EQ(copy(picture.row(1)), (Bytes{0, 0, 0, 0, 0, 0, 3, 2, 1}));
}

TEST(Picture, NoPictureHasNoPointsAndNoBytes) {
  const Picture none;
  EXPECT_TRUE(none.empty());
  EXPECT_EQ(none.width(), 0);
  EXPECT_EQ(none.height(), 0);
  EXPECT_TRUE(none.bitmap().empty());
}

TEST(Picture, SidesAreOneTo4096) {
  for (const auto& [width, height] :
       {std::pair{0, 1}, {1, 0}, {-1, 1}, {1, -1}, {4097, 1}, {1, 4097}}) {
    try {
      const Picture picture(width, height);
      ADD_FAILURE() << width << ' ' << height;
    } catch (const PictureFault& fault) {
      EXPECT_EQ(fault.number(), kInvalidPicture);
    }
  }
  EXPECT_EQ(Picture(4096, 1).width(), 4096);
  EXPECT_EQ(Picture(1, 4096).height(), 4096);
}

TEST(Picture, ReadsBackWhatItWrote) {
  Picture picture(7, 5);
  picture.setPoint(6, 0, kMixed);
  picture.setPoint(0, 4, kRed);
  EXPECT_TRUE(Picture::fromBitmap(picture.bitmap()) == picture);
}

TEST(PictureFromBitmap, OneBitAPointFromTheHighestBitOn) {
  const Picture picture = BitmapFile{
      .width = 10,
      .height = 2,
      .bits = 1,
      .palette = {0, 0, 0, 0, 3, 2, 1, 0},
      .points = {0x80, 0x40, 0, 0, 0x01, 0x80, 0,
                 0}}.picture();
  EXPECT_EQ(row(picture, 1), (std::vector<Colour>{kMixed, {}, {}, {}, {}, {}, {}, {}, {}, kMixed}));
  EXPECT_EQ(row(picture, 0), (std::vector<Colour>{{}, {}, {}, {}, {}, {}, {}, kMixed, kMixed, {}}));
}

TEST(PictureFromBitmap, FourBitsAPointFromTheHighHalfOn) {
  Bytes palette(64);
  palette[10 * 4] = 3;
  palette[10 * 4 + 1] = 2;
  palette[10 * 4 + 2] = 1;
  palette[5 * 4 + 2] = 255;
  const Picture picture =
      BitmapFile{.width = 3, .bits = 4, .palette = palette, .points = {0xA5, 0xAF, 0, 0}}.picture();
  EXPECT_EQ(row(picture, 0), (std::vector<Colour>{kMixed, kRed, kMixed}));
}

TEST(PictureFromBitmap, EightBitsAPoint) {
  Bytes palette(1024);
  palette[200 * 4 + 2] = 255;
  const Picture picture =
      BitmapFile{.width = 2, .bits = 8, .palette = palette, .points = {200, 0, 0, 0}}.picture();
  EXPECT_EQ(row(picture, 0), (std::vector<Colour>{kRed, kBlack}));
}

TEST(PictureFromBitmap, AnEntryThatThePaletteHasNotIsBlack) {
  const Picture picture = BitmapFile{
      .width = 3,
      .bits = 8,
      .colours = 2,
      .palette = {0, 0, 255, 0, 3, 2, 1, 0},
      .points = {0, 1, 2, 0}}.picture();
  EXPECT_EQ(row(picture, 0), (std::vector<Colour>{kRed, kMixed, kBlack}));
}

TEST(PictureFromBitmap, TwentyFourAndThirtyTwoBitsAPoint) {
  EXPECT_EQ(row(BitmapFile{.width = 2, .points = {3, 2, 1, 0, 0, 255, 0, 0}}.picture(), 0),
            (std::vector<Colour>{kMixed, kRed}));
  EXPECT_EQ(
      row(BitmapFile{.width = 2, .bits = 32, .points = {3, 2, 1, 9, 0, 0, 255, 9}}.picture(), 0),
      (std::vector<Colour>{kMixed, kRed}));
}

TEST(PictureFromBitmap, NegativeHeightsCountFromTheTop) {
  const Bytes stored{3, 2, 1, 0, 0, 0, 255, 0};
  const Picture bottomUp = BitmapFile{.height = 2, .points = stored}.picture();
  EXPECT_EQ(bottomUp.point(0, 1), kMixed);
  EXPECT_EQ(bottomUp.point(0, 0), kRed);
  const Picture topDown = BitmapFile{.height = -2, .points = stored}.picture();
  EXPECT_EQ(topDown.height(), 2);
  EXPECT_EQ(topDown.point(0, 0), kMixed);
  EXPECT_EQ(topDown.point(0, 1), kRed);
}

TEST(PictureFromBitmap, PointsAreWhereTheHeaderSays) {
  EXPECT_EQ(BitmapFile({.gap = 10, .points = {3, 2, 1, 0}}).picture().point(0, 0), kMixed);
  EXPECT_EQ(BitmapFile({.infoSize = 124, .points = {3, 2, 1, 0}}).picture().point(0, 0), kMixed);
}

TEST(PictureFromBitmap, OtherKindsAreRefused) {
  for (const std::uint16_t bits : std::initializer_list<std::uint16_t>{0, 2, 16, 25, 64, 65535}) {
    EXPECT_EQ(refusal({.bits = bits, .points = Bytes(64)}), 481) << bits;
  }
  for (const std::uint32_t compression : {1U, 2U, 3U, 0xFFFFFFFFU}) {
    EXPECT_EQ(refusal({.compression = compression, .points = Bytes(64)}), 481) << compression;
  }
  for (const std::uint32_t size : {0U, 12U, 39U, 0xFFFFFFFFU}) {
    EXPECT_NE(refusal({.bits = 1, .infoSize = size, .points = Bytes(64)}), 0) << size;
  }
  for (const std::uint32_t size : {1001U, 0xFFFFFFF2U, 0xFFFFFFFFU}) {
    EXPECT_NE(refusal({.infoSize = size, .points = {3, 2, 1, 0}}), 0) << size;
  }
  Bytes file = BitmapFile{.points = Bytes(4)}.bytes();
  EXPECT_EQ(refusal(file), 0);
  file[0] = 'b';
  EXPECT_EQ(refusal(file), 481);
  file[0] = 'B';
  file[1] = 'A';
  EXPECT_EQ(refusal(file), 481);
}

TEST(PictureFromBitmap, SizesBeyondTheLimitsAreRefused) {
  constexpr std::int32_t kHuge = 0x7FFFFFFF;
  constexpr std::int32_t kMost = -kHuge - 1;
  for (const std::int32_t side : {0, 4097, kHuge, kMost}) {
    EXPECT_EQ(refusal({.width = side, .points = Bytes(64)}), 481) << side;
    EXPECT_EQ(refusal({.height = side, .points = Bytes(64)}), 481) << side;
  }
  EXPECT_EQ(refusal({.width = -1, .points = Bytes(64)}), 481);
  EXPECT_EQ(refusal({.height = -4097, .points = Bytes(64)}), 481);
  EXPECT_EQ(refusal({.width = 4096, .height = 4096, .points = Bytes(64)}), 481);
}

TEST(PictureFromBitmap, APaletteThatIsCutShortIsRefused) {
  EXPECT_EQ(refusal({.bits = 1, .palette = Bytes(7)}), 481);
  EXPECT_EQ(refusal({.bits = 8, .palette = Bytes(8), .points = Bytes(4)}), 481);
  EXPECT_EQ(refusal({.bits = 8, .colours = 0xFFFFFFFF, .palette = Bytes(8), .points = Bytes(4)}),
            481);
}

TEST(PictureFromBitmap, AFileThatIsCutAtAnyByteIsRefused) {
  for (const std::uint16_t bits : kDepths) {
    const std::size_t palette = bits > 8 ? 0 : std::size_t{4} << bits;
    const Bytes whole =
        BitmapFile{.height = 2, .bits = bits, .palette = Bytes(palette), .points = Bytes(8)}
            .bytes();
    EXPECT_EQ(refusal(whole), 0);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_EQ(refusal(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))),
                481)
          << bits << ' ' << size;
    }
  }
}

TEST(PictureFromBitmap, RandomFilesAreAPictureOrRefused) {
  std::mt19937 random(11);
  int pictures = 0;
  for (int round = 0; round < 20000; ++round) {
    Bytes file = BitmapFile{.width = 5,
                            .height = 3,
                            .bits = kDepths[random() % kDepths.size()],
                            .colours = 3,
                            .palette = Bytes(12),
                            .points = Bytes(random() % 80)}
                     .bytes();
    for (unsigned change = random() % 4; change > 0; --change) {
      file[random() % file.size()] = static_cast<std::uint8_t>(random());
    }
    const int fault = refusal(file);
    EXPECT_TRUE(fault == 0 || fault == 481);
    pictures += fault == 0 ? 1 : 0;
  }
  EXPECT_GT(pictures, 1000);
}

}  // namespace
}  // namespace lumodevice::toolkit
