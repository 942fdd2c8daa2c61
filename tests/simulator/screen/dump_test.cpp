#include "simulator/screen/dump.hpp"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "simulator/screen/palette.hpp"
#include "tests/simulator/screen/screen_decoder.hpp"

using zansim::Colour;
using zansim::Picture;
using zansim::planes;
using namespace zansim::tests;

namespace {

constexpr std::size_t kOverlay1 = 81920;
constexpr std::size_t kOverlay2 = 81920 + 20480;

/// All bytes that are not 0, with their places.
std::vector<std::pair<std::size_t, int>> marks(const std::string& bytes) {
  std::vector<std::pair<std::size_t, int>> found;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] != 0) {
      found.emplace_back(i, static_cast<unsigned char>(bytes[i]));
    }
  }
  return found;
}
using Marks = std::vector<std::pair<std::size_t, int>>;

}  // namespace

TEST(DisplayMemory, holdsThreePlanesOfAnEmptyPicture) {
  EXPECT_EQ(planes(Picture()), std::string(122880, '\0'));
}

TEST(DisplayMemory, theBasePlaneRunsColumnByColumnFromTheRight) {
  Picture picture;
  picture.base.put(319, 0, 7);
  picture.base.put(318, 239, 56);
  picture.base.put(0, 100, 21);
  EXPECT_EQ(marks(planes(picture)), (Marks{{0, 7}, {256 + 239, 56}, {319 * 256 + 100, 21}}));
}

TEST(DisplayMemory, fourRowsOfAnOverlayShareAByteFromTheBottomUp) {
  Picture picture;
  picture.overlay1.put(319, 239, 1);
  picture.overlay1.put(319, 238, 2);
  picture.overlay1.put(319, 237, 3);
  picture.overlay1.put(319, 236, 1);
  picture.overlay1.put(0, 235, 3);
  picture.overlay2.put(10, 0, 2);
  EXPECT_EQ(marks(planes(picture)), (Marks{{kOverlay1, 0b01'11'10'01},
                                           {kOverlay1 + 320 + 319, 3},
                                           {kOverlay2 + std::size_t{59} * 320 + 309, 2 << 6}}));
}

TEST(Palette, hasTheInstrumentsColours) {
  for (std::size_t entry = 0; entry < 256; ++entry) {
    const auto [blue, green, red] = hostColour(entry);
    EXPECT_EQ(zansim::paletteColour(static_cast<zansim::Ink>(entry)), (Colour{red, green, blue}))
        << entry;
  }
}

TEST(Picture, overlay1LiesOverOverlay2OverTheBase) {
  Picture picture;
  picture.base.fill({0, 0, 4, 1}, 21);
  picture.overlay2.fill({1, 0, 3, 1}, 3);
  picture.overlay1.fill({2, 0, 1, 1}, 3);
  picture.overlay1.fill({3, 0, 1, 1}, 1);
  EXPECT_EQ(picture.entry(0, 0), 21);
  EXPECT_EQ(picture.entry(1, 0), 6);
  EXPECT_EQ(picture.entry(2, 0), 19);
  EXPECT_EQ(picture.entry(3, 0), 15);
  EXPECT_EQ(picture.colour(2, 0), (Colour{255, 132, 0}));
}

TEST(Bitmap, isAWindowsBitmapOf24BitsAPixel) {
  const std::string bitmap = zansim::bitmap(Picture());
  const unsigned char header[54] = {'B', 'M', 0x36, 0x84, 3, 0,    0, 0, 0, 0,    54, 0, 0,
                                    0,   40,  0,    0,    0, 0x40, 1, 0, 0, 240,  0,  0, 0,
                                    1,   0,   24,   0,    0, 0,    0, 0, 0, 0x84, 3};
  EXPECT_EQ(bitmap.size(), 230454U);
  EXPECT_EQ(bitmap.substr(0, 54), std::string(std::begin(header), std::end(header)));
}

TEST(Bitmap, isThePictureThatThePlanesGive) {
  Picture picture;
  for (int y = 0; y < 240; ++y) {
    for (int x = 0; x < 320; ++x) {
      picture.base.put(x, y, static_cast<zansim::Ink>((x * 7 + y * 13) % 256));
      picture.overlay1.put(x, y, static_cast<zansim::Ink>((x / 3 + y) % 11 < 4 ? (x + y) % 4 : 0));
      picture.overlay2.put(x, y, static_cast<zansim::Ink>((x + y / 5) % 7 < 3 ? (x * y) % 4 : 0));
    }
  }
  EXPECT_TRUE(paintedFromPlanes(planes(picture)) == readFromBitmap(zansim::bitmap(picture)));
}
