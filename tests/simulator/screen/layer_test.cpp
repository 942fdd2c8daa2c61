#include "simulator/screen/layer.hpp"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <string>

#include "simulator/screen/font.hpp"
#include "simulator/screen/text.hpp"

using zansim::Align;
using zansim::Box;
using zansim::Face;
using zansim::Layer;
using zansim::screenNumber;

namespace {

int marksIn(const Layer& layer, const Box& box) {
  int count = 0;
  for (int y = 0; y < 240; ++y) {
    for (int x = 0; x < 320; ++x) {
      count += box.contains(x, y) && layer.at(x, y) != 0 ? 1 : 0;
    }
  }
  return count;
}

int allMarks(const Layer& layer) {
  return marksIn(layer, {0, 0, 320, 240});
}

}  // namespace

TEST(Layer, whatLiesOutsideTheScreenIsLeftOut) {
  Layer layer;
  layer.fill({-10, -10, 12, 12}, 1);
  EXPECT_EQ(allMarks(layer), 4);
  layer.fill({318, 238, 100, 100}, 1);
  EXPECT_EQ(allMarks(layer), 8);
  layer.fill({400, 400, 10, 10}, 1);
  layer.fill({50, 50, -20, 5}, 1);
  layer.fillRound({-100, 300, 50, 50}, 1);
  layer.frame({-5, -5, 400, 400}, 1);
  layer.frameRound({-5, -5, 400, 400}, 1);
  layer.put(-1, 0, 1);
  layer.put(0, 240, 1);
  EXPECT_EQ(allMarks(layer), 8);
  layer.write({-20, -3, 60, 9}, Align::Left, "outside", 1);
  layer.write({310, 236, 60, 9}, Align::Left, "outside", 1);
  layer.writeLarge({-20, -20, 400, 300}, Align::Left, "88888888888888888888", Face::Reading,
                   zansim::hard(1));
  EXPECT_GT(allMarks(layer), 8);
}

TEST(Layer, framesAndRoundCornersHaveTheirShape) {
  Layer layer;
  layer.frame({10, 10, 6, 5}, 1);
  EXPECT_EQ(allMarks(layer), 2 * 6 + 2 * 3);
  Layer rounded;
  rounded.fillRound({10, 10, 8, 8}, 1);
  EXPECT_EQ(allMarks(rounded), 64 - 4 * 3);
  EXPECT_EQ(rounded.at(10, 10), 0);
  EXPECT_EQ(rounded.at(11, 11), 1);
  EXPECT_EQ(rounded.at(10, 12), 1);
  Layer outline;
  outline.frameRound({10, 10, 8, 8}, 1);
  EXPECT_EQ(allMarks(outline), 4 * 4 + 4);
  EXPECT_EQ(outline.at(11, 11), 1);
  EXPECT_EQ(outline.at(17, 15), 1);
}

TEST(Layer, aTextStaysInsideItsField) {
  const Box field{100, 100, 33, 9};
  for (const Align align : {Align::Left, Align::Centre, Align::Right}) {
    Layer layer;
    layer.write(field, align, "far too long for its field gjpqy", 1);
    EXPECT_EQ(marksIn(layer, field), allMarks(layer));
    EXPECT_GT(allMarks(layer), 40);
    Layer large;
    large.writeLarge(field, align, "-888888.888E-88", Face::Reading, zansim::hard(1));
    EXPECT_EQ(marksIn(large, field), allMarks(large));
    EXPECT_GT(allMarks(large), 40);
  }
}

TEST(Layer, aTextStandsWhereItsAlignmentSays) {
  const Box field{100, 100, 60, 9};
  const auto columns = [&](Align align) {
    Layer layer;
    layer.write(field, align, "H", 1);
    std::set<int> found;
    for (int x = 0; x < 320; ++x) {
      if (marksIn(layer, {x, 0, 1, 240}) > 0) {
        found.insert(x);
      }
    }
    return std::pair(*found.begin(), *found.rbegin());
  };
  EXPECT_EQ(columns(Align::Left), std::pair(100, 104));
  EXPECT_EQ(columns(Align::Centre), std::pair(127, 131));
  EXPECT_EQ(columns(Align::Right), std::pair(155, 159));
}

TEST(SmallFont, everyPrintableCharacterLooksLikeNoOther) {
  std::set<zansim::Glyph> seen;
  for (int c = ' '; c <= '~'; ++c) {
    EXPECT_TRUE(seen.insert(zansim::glyph(static_cast<char>(c))).second) << static_cast<char>(c);
  }
  EXPECT_EQ(zansim::glyph(' '), zansim::Glyph{});
  for (const char c : {zansim::kOhm[0], zansim::kAmperesPerMicrosecond[2], '\n'}) {
    EXPECT_TRUE(seen.insert(zansim::glyph(c)).second) << static_cast<int>(c);
  }
  EXPECT_EQ(zansim::glyph('\xFF'), zansim::glyph('\0'));
}

TEST(LargeFont, everyLetterLooksLikeNoOtherAndDigitsAreEquallyWide) {
  const std::string letters = "0123456789.-+/%ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  for (const Face face : {Face::Badge, Face::Unit, Face::Reading}) {
    std::set<std::vector<std::uint8_t>> seen;
    for (const char c : letters) {
      const zansim::StrokeGlyph& glyph = zansim::strokeGlyph(face, c);
      EXPECT_TRUE(seen.insert(glyph.coverage).second) << c;
      EXPECT_EQ(glyph.coverage.size(),
                static_cast<std::size_t>(glyph.width * zansim::faceHeight(face)));
      if (c <= '9' && c >= '0') {
        EXPECT_EQ(glyph.advance, zansim::strokeGlyph(face, '0').advance) << c;
      }
    }
    for (const char c : {'a', '\0', '\xFF'}) {
      EXPECT_EQ(&zansim::strokeGlyph(face, c), &zansim::strokeGlyph(face, ' '));
    }
  }
}

TEST(ScreenNumber, hasFiveDigits) {
  EXPECT_EQ(screenNumber(0), "0.0000");
  EXPECT_EQ(screenNumber(12.34567), "12.346");
  EXPECT_EQ(screenNumber(9.99996), "10.000");
  EXPECT_EQ(screenNumber(380.1249), "380.12");
  EXPECT_EQ(screenNumber(15000), "15000");
  EXPECT_EQ(screenNumber(-1.5), "-1.5000");
}

TEST(ScreenNumber, isNeverWiderThanItsField) {
  EXPECT_EQ(screenNumber(99999.6), "1.0E5");
  EXPECT_EQ(screenNumber(9.9E37), "9.9E37");
  EXPECT_EQ(screenNumber(-9.9E37), "-9.9E37");
  EXPECT_EQ(screenNumber(std::numeric_limits<double>::max()), "2E308");
  EXPECT_EQ(screenNumber(std::numeric_limits<double>::infinity()), "-----");
  EXPECT_EQ(screenNumber(std::nan("")), "-----");
  for (int exponent = -900; exponent < 900; ++exponent) {
    const double value = std::pow(1.9, exponent);
    EXPECT_LE(screenNumber(value).size(), 6U) << value;
    EXPECT_LE(screenNumber(-value).size(), 7U) << value;
  }
}

TEST(ScreenNumber, knowsNoNegativeZero) {
  EXPECT_EQ(screenNumber(-0.0), "0.0000");
  EXPECT_EQ(screenNumber(-0.00001), "0.0000");
}
