#include <cfenv>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "tests/text/number_fault.hpp"

namespace lumodevice::text {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Row {
  double value;
  std::int32_t whole;
};

constexpr Row kBothWidths[] = {{0.0, 0},
                               {-0.0, 0},
                               {0.25, 0},
                               {0.5, 0},
                               {0.75, 1},
                               {1.5, 2},
                               {2.5, 2},
                               {3.5, 4},
                               {-0.5, 0},
                               {-1.5, -2},
                               {-2.5, -2},
                               {-3.5, -4},
                               {1e-300, 0},
                               {5e-324, 0},
                               {0.49999999999999994, 0},
                               {0.5000000000000001, 1},
                               {2.4999999999999996, 2},
                               {2.5000000000000004, 3},
                               {32766.5, 32766},
                               {32767, 32767},
                               {32767.4, 32767},
                               {32767.499999999996, 32767},
                               {-32767.5, -32768},
                               {-32768, -32768},
                               {-32768.5, -32768}};

TEST(ToWhole, roundsHalvesToTheEvenNumber) {
  for (const Row& row : kBothWidths) {
    EXPECT_EQ(toWhole16(row.value), row.whole) << row.value;
    EXPECT_EQ(toWhole32(row.value), row.whole) << row.value;
  }
}

TEST(ToWhole, roundsEveryHalfOf16BitsToTheEvenNumber) {
  for (int whole = -32768; whole < 32767; ++whole) {
    const int even = whole % 2 == 0 ? whole : whole + 1;
    ASSERT_EQ(toWhole16(whole), whole);
    ASSERT_EQ(toWhole16(whole + 0.5), even) << whole;
    ASSERT_EQ(toWhole32(whole + 0.5), even) << whole;
  }
}

TEST(ToWhole, reachesTheBordersOf32Bits) {
  constexpr Row rows[] = {{32767.5, 32768},
                          {32768.5, 32768},
                          {-32768.6, -32769},
                          {-32769.5, -32770},
                          {2147483646.5, 2147483646},
                          {2147483647.0, 2147483647},
                          {2147483647.4999998, 2147483647},
                          {-2147483647.5, -2147483647 - 1},
                          {-2147483648.0, -2147483647 - 1},
                          {-2147483648.5, -2147483647 - 1}};
  for (const Row& row : rows) EXPECT_EQ(toWhole32(row.value), row.whole) << row.value;
}

TEST(ToWhole, refusesWhatDoesNotFit) {
  for (const double value : {32767.5, 32768.0, 40000.0, -32768.50000000001, -32768.6, -32769.0, 1e9,
                             1e308, -1e308, kInfinity, -kInfinity, kNaN}) {
    EXPECT_EQ(faultOf([=] { return toWhole16(value); }), kOverflow) << value;
  }
  for (const double value : {2147483647.5, 2147483648.0, -2147483648.6, -2147483649.0, 4294967296.0,
                             1e308, -1e308, kInfinity, -kInfinity, kNaN}) {
    EXPECT_EQ(faultOf([=] { return toWhole32(value); }), kOverflow) << value;
  }
}

TEST(ToWhole, roundsAlikeInEveryRoundingModeOfTheProcess) {
  const int before = std::fegetround();
  for (const int mode : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO, FE_TONEAREST}) {
    ASSERT_EQ(std::fesetround(mode), 0);
    for (const Row& row : kBothWidths) EXPECT_EQ(toWhole16(row.value), row.whole) << row.value;
  }
  std::fesetround(before);
}

TEST(Arithmetic16, givesWhatFits) {
  EXPECT_EQ(add16(2, 3), 5);
  EXPECT_EQ(add16(32766, 1), 32767);
  EXPECT_EQ(add16(-32767, -1), -32768);
  EXPECT_EQ(add16(32767, -32768), -1);
}

TEST(Arithmetic16, refusesWhatDoesNotFit) {
  EXPECT_EQ(faultOf([] { return add16(32767, 1); }), kOverflow);
  EXPECT_EQ(faultOf([] { return add16(-32768, -1); }), kOverflow);
  EXPECT_EQ(faultOf([] { return add16(32767, 32767); }), kOverflow);
}

}  // namespace
}  // namespace lumodevice::text
