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

using namespace std::string_literals;

struct Row {
  std::string text;
  double value;
};

void expectAll(std::initializer_list<Row> rows) {
  for (const Row& row : rows) EXPECT_EQ(Val(row.text), row.value) << '"' << row.text << '"';
}

TEST(Val, readsTheNumberAtTheStart) {
  expectAll({{"0", 0},
             {"5", 5},
             {"12.5", 12.5},
             {"5.", 5},
             {".5", 0.5},
             {"+5", 5},
             {"-5", -5},
             {"-.5", -0.5},
             {"007", 7},
             {"0.1", 0.1},
             {"1.2.3", 1.2},
             {"3,CH4", 3},
             {"1,000", 1},
             {"5-3", 5},
             {"+1.234500E+01", 12.345}});
}

TEST(Val, isZeroWithoutANumber) {
  expectAll({{"", 0},    {"   ", 0}, {"\t\n", 0}, {".", 0},    {"-", 0},    {"+", 0},   {"--5", 0},
             {"+-5", 0}, {"-+5", 0}, {"abc", 0},  {"$5", 0},   {"(5)", 0},  {",5", 0},  {"E5", 0},
             {".E5", 0}, {"&", 0},   {"&H", 0},   {"&HG", 0},  {"&O", 0},   {"&O8", 0}, {"&17", 0},
             {"&&", 0},  {"inf", 0}, {"nan", 0},  {"0x10", 0}, {"-&H10", 0}});
}

TEST(Val, isNeverMinusZero) {
  for (const char* text : {"-0", "-", "-0.0", "-.", "-1e-400", "-0e5"}) {
    EXPECT_FALSE(std::signbit(Val(text))) << text;
  }
}

TEST(Val, skipsBlanksAnywhereAndNothingElse) {
  expectAll({{"    1615 198th Street N.E.", 1615198},
             {"12  3.4  5.6", 123.45},
             {"- 5", -5},
             {"\n+1.5\n", 0},
             {"+1.5\n", 1.5},
             {"1\t2\n3", 1},
             {"1\n2", 1},
             {"\t1", 0},
             {"1 . 5 E - 1", 0.15},
             {" & H 1 0 ", 16},
             {"& H F F F F &", 65535}});
}

TEST(Val, endsAtWhatCannotContinueANumber) {
  expectAll({{"1\r2", 1},
             {"\r12", 0},
             {"10%", 10},
             {"10&", 10},
             {"10!5", 10},
             {"40000%", 40000},
             {"1\v2", 1},
             {"1\302\2402", 1},
             {"\302\2402", 0},
             {"\343\200\2002", 0},
             {"1\357\274\222", 1},
             {"1\377", 1},
             {"1\0002"s, 1}});
}

TEST(Val, readsExponentsWithEOrD) {
  expectAll({{"1E3", 1000},
             {"1e3", 1000},
             {"1D3", 1000},
             {"1d3", 1000},
             {"1e+3", 1000},
             {"25d-1", 2.5},
             {"5.e1", 50},
             {".5e1", 5},
             {"1E", 1},
             {"1E+", 1},
             {"1e-", 1},
             {"1EE5", 1},
             {"1e+-5", 1},
             {"1e5.5", 1e5},
             {"1e0005", 1e5}});
}

TEST(Val, readsHexadecimalAndOctalNumbersWithTheirSign) {
  expectAll({{"&H0", 0},
             {"&h1f", 31},
             {"&HFF", 255},
             {"&H7FFF", 32767},
             {"&H8000", -32768},
             {"&HFFFF", -1},
             {"&HFFFF&", 65535},
             {"&H8000&", 32768},
             {"&H10000", 65536},
             {"&H7FFFFFFF", 2147483647},
             {"&H80000000", -2147483648.0},
             {"&HFFFFFFFF", -1},
             {"&HFFFFFFFF&", -1},
             {"&H0000FFFF", -1},
             {"&H000000000001", 1},
             {"&H1G", 1},
             {"&H1.5", 1},
             {"&O17", 15},
             {"&o17", 15},
             {"&O178", 15},
             {"&O77777", 32767},
             {"&O100000", -32768},
             {"&O177777", -1},
             {"&O177777&", 65535},
             {"&O200000", 65536},
             {"&O37777777777", -1}});
}

TEST(Val, overflowsBeyond32BitsOrTheLargestDouble) {
  for (const char* text : {"&H100000000", "&H123456789", "&H123456789&", "&O40000000000", "1e309",
                           "-1e309", "1.8e308", "1e400", "1e99999999999999999999", "1d400"}) {
    EXPECT_EQ(faultOf([=] { return Val(text); }), kOverflow) << text;
  }
  const std::string digits = "&H" + std::string(1'000'000, 'F');
  EXPECT_EQ(faultOf([&] { return Val(digits); }), kOverflow);
}

TEST(Val, keepsTheEndsOfTheRangeOfDoubles) {
  expectAll({{"1e308", 1e308},
             {"1.7976931348623157e308", std::numeric_limits<double>::max()},
             {"1.7976931348623158e308", std::numeric_limits<double>::max()},
             {"2.2250738585072014e-308", std::numeric_limits<double>::min()},
             {"2.2250738585072011e-308", 2.2250738585072011e-308},
             {"5e-324", std::numeric_limits<double>::denorm_min()},
             {"3e-324", std::numeric_limits<double>::denorm_min()},
             {"2e-324", 0},
             {"1e-324", 0},
             {"9e-325", 0},
             {"1e-400", 0},
             {"1e-99999999999999999999", 0},
             {"0e400", 0},
             {"0.000e99999999999999999999", 0}});
}

TEST(Val, roundsHalfwayNumbersByEveryDigit) {
  // 2^53 + 1 lies halfway between two doubles: to the even one, unless anything follows.
  const std::string half = "9007199254740993.";
  const std::string zeros(10'000, '0');
  expectAll({{half, 9007199254740992.0},
             {half + zeros, 9007199254740992.0},
             {half + zeros + "1", 9007199254740994.0},
             {"9007199254740992." + std::string(10'000, '9'), 9007199254740992.0}});
}

TEST(Val, readsAnyNumberOfDigits) {
  const std::string nines(10'000, '9');
  const std::string zeros(1'000'000, '0');
  expectAll({{"0." + nines, 1},
             {nines + "e-10000", 1},
             {"." + nines + "E1", 10},
             {zeros + "5", 5},
             {"0." + zeros + "5e1000001", 5},
             {"5" + zeros + "e-1000000", 5},
             {std::string(1'000'000, ' ') + "5", 5},
             {"1e" + zeros + "2", 100}});
  EXPECT_EQ(faultOf([&] { return Val(nines); }), kOverflow);
}

TEST(Val, agreesWithTheCLibraryOnRandomNumbers) {
  std::mt19937_64 random(20240501);
  for (int round = 0; round < 20'000; ++round) {
    std::string text = round % 2 == 0 ? "-" : "";
    const auto digits = 1 + random() % (round % 100 == 0 ? 1200 : 25);
    const auto point = random() % (digits + 1);
    for (std::uint64_t i = 0; i < digits; ++i) {
      if (i == point) text += '.';
      text += static_cast<char>('0' + random() % 10);
    }
    text += "e" + std::to_string(static_cast<int>(random() % 660) - 345);
    const double expected = std::strtod(text.c_str(), nullptr);
    if (std::isinf(expected)) {
      EXPECT_EQ(faultOf([&] { return Val(text); }), kOverflow) << text;
    } else {
      EXPECT_EQ(Val(text), expected) << text;
    }
  }
}

TEST(Val, readsBackEveryDoubleFromSeventeenDigits) {
  std::mt19937_64 random(7);
  for (int round = 0; round < 20'000; ++round) {
    const auto value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    const std::string text = printed(value, "%.17g");
    EXPECT_EQ(Val(text), value) << text;
  }
}

}  // namespace
}  // namespace lumodevice::text
