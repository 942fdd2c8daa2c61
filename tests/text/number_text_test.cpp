#include <bit>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

#include "tests/text/number_fault.hpp"
#include "tests/text/printed.hpp"

namespace lumodevice::text {
namespace {

struct Row {
  double value;
  std::string text;
};

constexpr double kNonFinite[] = {std::numeric_limits<double>::infinity(),
                                 -std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN()};

TEST(NumberText, hasFifteenSignificantDigits) {
  const Row rows[] = {{0, "0"},
                      {-0.0, "0"},
                      {5, "5"},
                      {-5, "-5"},
                      {0.5, "0.5"},
                      {-0.5, "-0.5"},
                      {100, "100"},
                      {9600, "9600"},
                      {12.345, "12.345"},
                      {0.1 + 0.2, "0.3"},
                      {1.0 / 3, "0.333333333333333"},
                      {2.0 / 3, "0.666666666666667"},
                      {123456789012345, "123456789012345"},
                      {999999999999999, "999999999999999"}};
  for (const Row& row : rows) EXPECT_EQ(numberText(row.value), row.text);
}

TEST(NumberText, hasExponentFormForLargeAndSmallNumbers) {
  const Row rows[] = {{1e15, "1E+15"},
                      {999999999999999.9, "1E+15"},
                      {1234567890123456, "1.23456789012346E+15"},
                      {-1e15, "-1E+15"},
                      {1e100, "1E+100"},
                      {1e308, "1E+308"},
                      {std::numeric_limits<double>::max(), "1.79769313486232E+308"},
                      {0.0001, "0.0001"},
                      {0.00012, "0.00012"},
                      {0.00001, "1E-05"},
                      {-0.00001, "-1E-05"},
                      {0.000099999999999999999, "0.0001"},
                      {1.5e-10, "1.5E-10"},
                      {5e-324, "4.94065645841247E-324"}};
  for (const Row& row : rows) EXPECT_EQ(numberText(row.value), row.text);
}

TEST(SingleText, hasSevenSignificantDigits) {
  struct Single {
    float value;
    const char* text;
  };
  for (const auto& [value, text] : {Single{0, "0"},
                                    {-0.0F, "0"},
                                    {12.5F, "12.5"},
                                    {-0.1F, "-0.1"},
                                    {1.0F / 3, "0.3333333"},
                                    {1234567, "1234567"},
                                    {9999999.5F, "1E+07"},
                                    {12345678, "1.234568E+07"},
                                    {0.0001F, "0.0001"},
                                    {0.00001F, "1E-05"},
                                    {std::numeric_limits<float>::max(), "3.402823E+38"}}) {
    EXPECT_EQ(singleText(value), text);
  }
}

TEST(SingleText, hasNoneForInfinitiesAndNaN) {
  for (const double value : kNonFinite) {
    EXPECT_EQ(faultOf([&] { return singleText(static_cast<float>(value)); }), kOverflow);
  }
}

TEST(NumberText, agreesWithTheCLibraryOnRandomNumbers) {
  std::mt19937_64 random(15);
  for (int round = 0; round < 20'000; ++round) {
    auto value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    if (round % 2 == 0) value = std::ldexp(value, -std::ilogb(value) + round % 60);
    EXPECT_EQ(numberText(value), printed(value, "%.15G"));
  }
}

TEST(NumberText, readsBackUpToTheLastNumberThatFifteenDigitsCanSay) {
  EXPECT_EQ(Val(numberText(1.79769313486231e308)), 1.79769313486231e308);
  EXPECT_EQ(faultOf([] { return Val(numberText(std::numeric_limits<double>::max())); }), kOverflow);
}

TEST(NumberText, refusesWhatNoTextIsTrueOf) {
  for (const double value : kNonFinite) {
    EXPECT_EQ(faultOf([=] { return numberText(value); }), kOverflow);
    EXPECT_EQ(faultOf([=] { return formatValue(value); }), kOverflow);
  }
}

TEST(FormatValue, hasAtMostThreeDecimalsAndNoPointWithoutThem) {
  const Row rows[] = {{0, "0"},
                      {5, "5"},
                      {-5, "-5"},
                      {10, "10"},
                      {100, "100"},
                      {5.25, "5.25"},
                      {5.1, "5.1"},
                      {0.5, "0.5"},
                      {-0.4, "-0.4"},
                      {0.001, "0.001"},
                      {1.05, "1.05"},
                      {12345.6789, "12345.679"},
                      {1234567, "1234567"},
                      {0.1 + 0.2, "0.3"}};
  for (const Row& row : rows) EXPECT_EQ(formatValue(row.value), row.text);
}

TEST(FormatValue, roundsHalvesOfTheDecimalTextAwayFromZero) {
  const Row rows[] = {{1.0005, "1.001"},
                      {-1.0005, "-1.001"},
                      {1.0015, "1.002"},
                      {1.0025, "1.003"},
                      {1.00049, "1"},
                      {0.0005, "0.001"},
                      {-0.0005, "-0.001"},
                      {0.00049, "0"},
                      {0.000499999999999999999, "0.001"},
                      {0.9995, "1"},
                      {0.9994, "0.999"},
                      {9.9995, "10"},
                      {999.9996, "1000"},
                      {-999.9996, "-1000"},
                      {99999999999.9995, "100000000000"},
                      {99999999999.9994, "99999999999.999"},
                      {999999999999.995, "999999999999.995"},
                      {1.0 / 3, "0.333"},
                      {2.0 / 3, "0.667"}};
  for (const Row& row : rows) EXPECT_EQ(formatValue(row.value), row.text);
}

TEST(FormatValue, hasNoMinusZero) {
  for (const double value : {-0.0, -0.0004, -0.00001, -1e-300, -5e-324}) {
    EXPECT_EQ(formatValue(value), "0") << value;
  }
}

TEST(FormatValue, writesEveryDigitOfLargeNumbers) {
  const Row rows[] = {
      {1e15, "1000000000000000"},
      {1e20, "1" + std::string(20, '0')},
      {-1e20, "-1" + std::string(20, '0')},
      {1234567890123456, "1234567890123460"},
      {1e308, "1" + std::string(308, '0')},
      {std::numeric_limits<double>::max(), "179769313486232" + std::string(294, '0')}};
  for (const Row& row : rows) EXPECT_EQ(formatValue(row.value), row.text);
}

TEST(FormatValue, liesWithinHalfAThousandthOfTheNumber) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> numbers(-2000, 2000);
  for (int round = 0; round < 20'000; ++round) {
    const double value = numbers(random);
    const std::string text = formatValue(value);
    EXPECT_NEAR(std::strtod(text.c_str(), nullptr), value, 0.0005 + 1e-11) << text;
    EXPECT_EQ(formatValue(std::strtod(text.c_str(), nullptr)), text);
  }
}

TEST(FormatValue, writesEveryThousandthAsItIs) {
  for (int thousandths = 1; thousandths < 20'000; ++thousandths) {
    std::string text = printed(thousandths / 1000.0, "%.3f");
    text.resize(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    EXPECT_EQ(formatValue(thousandths / 1000.0), text);
  }
}

}  // namespace
}  // namespace lumodevice::text
