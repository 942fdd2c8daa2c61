#include <gtest/gtest.h>

#include "lumodevice/capture/display_dump.hpp"
#include "tests/capture/screens.hpp"
#include "tests/support/point_painter.hpp"

namespace lumodevice::capture {
namespace {

using toolkit::Picture;

constexpr std::size_t kOverlay1 = 81920;
constexpr std::size_t kOverlay2 = 81920 + 20480;

/// A dump of which single bytes are set.
class Dump {
 public:
  Dump() { FillScreenPalette(palette_); }
  explicit Dump(Bytes bytes) : Dump() { bytes_ = std::move(bytes); }

  Dump& base(std::size_t column, std::size_t row, std::uint8_t entry) {
    return set(column * 256 + row, entry);
  }
  Dump& overlay1(std::size_t group, std::size_t column, std::uint8_t byte) {
    return set(kOverlay1 + group * 320 + column, byte);
  }
  Dump& overlay2(std::size_t group, std::size_t column, std::uint8_t byte) {
    return set(kOverlay2 + group * 320 + column, byte);
  }

  [[nodiscard]] Picture painted() const {
    Picture picture(kScreenWidth, kScreenHeight);
    paintDump(planesOf(bytes_), palette_, picture);
    return picture;
  }
  [[nodiscard]] Picture pointByPoint() const {
    return support::paintPointByPoint(bytes_, palette_);
  }
  [[nodiscard]] std::string shown() const { return points(painted()); }

 private:
  Dump& set(std::size_t at, std::uint8_t value) {
    bytes_[at] = value;
    return *this;
  }

  Bytes bytes_ = Bytes(kDumpSize);
  ScreenPalette palette_{};
};

TEST(DisplayDump, IsThreePlanesOneBehindTheOther) {
  const Bytes bytes = randomDump(1);
  const DisplayDump dump = planesOf(bytes);
  EXPECT_EQ(DisplayDump::kSize, kDumpSize);
  EXPECT_EQ(dump.base().data(), bytes.data());
  EXPECT_EQ(dump.base().size(), 81920U);
  EXPECT_EQ(dump.overlay(1).data(), bytes.data() + kOverlay1);
  EXPECT_EQ(dump.overlay(1).size(), 20480U);
  EXPECT_EQ(dump.overlay(2).data(), bytes.data() + kOverlay2);
  EXPECT_EQ(dump.overlay(2).size(), 20480U);
}

TEST(DisplayDump, NothingPaintsABlackPicture) {
  EXPECT_EQ(Dump().shown(), "");
}

TEST(DisplayDump, TheBasePlaneIsMirroredAndUpright) {
  EXPECT_EQ(Dump().base(0, 0, 3).shown(), "319,0 FF0050\n");
  EXPECT_EQ(Dump().base(0, 239, 3).shown(), "319,239 FF0050\n");
  EXPECT_EQ(Dump().base(319, 0, 3).shown(), "0,0 FF0050\n");
  EXPECT_EQ(Dump().base(100, 7, 3).shown(), "219,7 FF0050\n");
}

TEST(DisplayDump, RowsOfTheBasePlaneBelowTheScreenAreNotPainted) {
  Dump dump;
  for (std::size_t row = 240; row < 256; ++row) {
    dump.base(5, row, 7);
  }
  EXPECT_EQ(dump.shown(), "");
}

TEST(DisplayDump, OverlaysAreMirroredAndUpsideDown) {
  EXPECT_EQ(Dump().overlay1(0, 0, 0b11).shown(), "319,239 FF8400\n");
  EXPECT_EQ(Dump().overlay1(0, 319, 0b11).shown(), "0,239 FF8400\n");
  EXPECT_EQ(Dump().overlay1(59, 0, 0b11'00'00'00).shown(), "319,0 FF8400\n");
  EXPECT_EQ(Dump().overlay2(0, 0, 0b11).shown(), "319,239 66FF66\n");
  EXPECT_EQ(Dump().overlay2(59, 10, 0b11'00'00'00).shown(), "309,0 66FF66\n");
}

TEST(DisplayDump, TheLowestBitsOfAnOverlaysByteAreTheLowestOfItsFourRows) {
  EXPECT_EQ(Dump().overlay1(10, 19, 0b11'10'01'00).shown(),
            "300,196 FF8400\n300,197 BBBBBB\n300,198 FFFFFF\n");
  EXPECT_EQ(Dump().overlay2(10, 19, 0b00'01'10'11).shown(),
            "300,197 888888\n300,198 FFFFFF\n300,199 66FF66\n");
}

TEST(DisplayDump, RowGroupsOfAnOverlayAboveTheScreenAreNotPainted) {
  Dump dump;
  for (std::size_t group = 60; group < 64; ++group) {
    dump.overlay1(group, 3, 0xFF).overlay2(group, 4, 0xFF);
  }
  EXPECT_EQ(dump.shown(), "");
}

TEST(DisplayDump, TransparentOverlaysLeaveTheBasePlane) {
  EXPECT_EQ(Dump().base(9, 9, 14).shown(), "310,9 FF2222\n");
}

TEST(DisplayDump, OverlaysHideTheBasePlane) {
  EXPECT_EQ(Dump().base(0, 239, 14).overlay2(0, 0, 1).shown(), "319,239 888888\n");
  EXPECT_EQ(Dump().base(0, 239, 14).overlay1(0, 0, 1).shown(), "319,239 FFFFFF\n");
}

TEST(DisplayDump, Overlay1HidesOverlay2) {
  EXPECT_EQ(Dump().overlay1(0, 0, 2).overlay2(0, 0, 3).shown(), "319,239 BBBBBB\n");
  EXPECT_EQ(Dump().overlay1(0, 0, 0).overlay2(0, 0, 3).shown(), "319,239 66FF66\n");
}

TEST(DisplayDump, ValuesOfTheBasePlaneAbove56AreBlack) {
  Dump dump;
  for (std::size_t value = 57; value < 256; ++value) {
    dump.base(value, 120, static_cast<std::uint8_t>(value));
  }
  EXPECT_EQ(dump.shown(), "");
  EXPECT_EQ(dump.base(0, 0, 56).shown(), "319,0 00E000\n");
}

TEST(DisplayDump, EveryByteOfAnOverlayUnpacksToTheEntriesOfItsPlane) {
  constexpr std::uint8_t kEntries[2][4] = {{0, 15, 11, 19}, {0, 8, 7, 6}};
  for (int plane = 1; plane <= 2; ++plane) {
    for (unsigned byte = 0; byte < 256; ++byte) {
      const auto& entries = kEntries[plane - 1];
      std::uint8_t rows[4] = {};
      UnpackOverlayByte(static_cast<std::uint8_t>(byte), rows[3], rows[2], rows[1], rows[0], plane);
      EXPECT_EQ(rows[0], entries[byte % 4]) << byte;
      EXPECT_EQ(rows[1], entries[byte / 4 % 4]) << byte;
      EXPECT_EQ(rows[2], entries[byte / 16 % 4]) << byte;
      EXPECT_EQ(rows[3], entries[byte / 64]) << byte;
    }
  }
}

TEST(DisplayDump, ARandomDumpIsPaintedAsItWouldBePointByPoint) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    const Dump any(randomDump(seed));
    EXPECT_TRUE(any.painted() == any.pointByPoint()) << seed;
    const Dump coloured(colouredDump(seed));
    EXPECT_TRUE(coloured.painted() == coloured.pointByPoint()) << seed;
  }
}

TEST(DisplayDump, PaintingCoversWhateverThePictureShowed) {
  Bytes bytes(kDumpSize);
  ScreenPalette palette{};
  Picture picture = pattern(kScreenWidth, kScreenHeight);
  paintDump(planesOf(bytes), palette, picture);
  EXPECT_TRUE(picture == Picture(kScreenWidth, kScreenHeight));
}

}  // namespace
}  // namespace lumodevice::capture
