#include "lumodevice/io/find_expression.hpp"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace lumodevice::io {
namespace {

struct Case {
  const char* expression;
  const char* name;
  bool matches;
};

TEST(FindExpression, matchesWholeNamesWithoutRegardToCase) {
  constexpr Case cases[] = {
      {"?*INSTR", "USB0::0x1::0x2::A::INSTR", true},
      {"?*", "ANY", true},
      {"?*", "", true},
      {"?+", "", false},
      {"?*INSTR", "TCPIP0::h::5::SOCKET", false},
      {"?*instr", "ASRL1::INSTR", true},
      {"?*INSTR", "asrl1::instr", true},
      {"GPIB[0-9]*::?*INSTR", "GPIB0::5::INSTR", true},
      {"GPIB[0-9]+::?*", "GPIB::5::INSTR", false},
      {"GPIB[^1]::?*", "GPIB0::5::INSTR", true},
      {"GPIB[^01]::?*", "GPIB0::5::INSTR", false},
      {"(ASRL|USB)?*", "USB0::A::INSTR", true},
      {"(ASRL|USB)?*", "GPIB0::1::INSTR", false},
      {"ASRL?*|USB?*", "USB0::A::INSTR", true},
      {"USB", "USB0", false},
      {"(AB)+", "ABAB", true},
      {"(AB)+", "ABA", false},
      {"A\\?B", "A?B", true},
      {"A\\?B", "AXB", false},
      {"[a-c]x", "Bx", true},
      {"AB*", "A", true},
      {"AB+", "A", false},
      {"?*INSTR", "USB0::0x1::0x2::Z::INSTR", true},
      {"?*INSTR", "usb0::0x1::0x2::z::instr", true},
      {"?*instr", "INSTR", true},
      {"?*INSTR", "TCPIP0::h::1::SOCKET", false},
      {"?*INSTR", "USB0::INSTRX", false},
      {"?+INSTR", "INSTR", false},
      {"GPIB[0-9]*::?*INSTR", "GPIB12::5::INSTR", true},
      {"GPIB[0-9]*::?*INSTR", "GPIB::5::INSTR", true},
      {"GPIB[0-9]*::?*INSTR", "GPIB-VXI0::5::INSTR", false},
      {"GPIB[^0]::5::INSTR", "GPIB1::5::INSTR", true},
      {"GPIB[^0]::5::INSTR", "GPIB0::5::INSTR", false},
      {"[a-c]+", "aBC", true},
      {"[a-c]+", "abd", false},
      {"[^a-c]", "B", false},
      {"[ab-]", "-", true},
      {"USB?*|GPIB?*", "GPIB0", true},
      {"USB?*|GPIB?*", "ASRL1", false},
      {"(USB|ASRL)[0-9]", "ASRL1", true},
      {"(ab)+", "ababab", true},
      {"(ab)+", "aba", false},
      {"a\\?", "a?", true},
      {"a\\?", "ab", false},
      {"[\\]]", "]", true},
      {"a**", "aaa", true},
      {"x(a|b)*y", "xabbay", true},
      {"?", "", false},
  };
  for (const auto& [expression, name, matches] : cases) {
    const auto parsed = FindExpression::parse(expression);
    ASSERT_TRUE(parsed) << expression;
    EXPECT_EQ(parsed->matches(name), matches) << expression << " on " << name;
  }
}

TEST(FindExpression, malformedOnesAreRefused) {
  for (const char* expression :
       {"", "*a", "+a", "(", ")", "(a", "a)", "()", "[", "[]", "[a", "[z-a]", "a|", "|a", "\\",
        "[\\", "[a-", "?*{VI_ATTR_X == 1}", "(*a)"}) {
    EXPECT_FALSE(FindExpression::parse(expression)) << expression;
  }
  EXPECT_FALSE(FindExpression::parse(std::string(FindExpression::kLongest + 1, 'a')));
  EXPECT_FALSE(FindExpression::parse(std::string(500, '(') + "a" + std::string(500, ')')));
}

TEST(FindExpression, anAllExcludingListIsRefused) {
  EXPECT_FALSE(FindExpression::parse(std::string("[^\0-\xFF]", 6)));
}

TEST(FindExpression, hostileExpressionsStayCheap) {
  std::string nested = "a";
  for (int i = 0; i < FindExpression::kDeepest; ++i) nested = "(" + nested + "*)*";
  std::string optional;
  for (int i = 0; i < 100; ++i) optional += "(a|a)*";
  const std::string name = std::string(250, 'a') + "b";
  for (const std::string& expression : {nested, optional, std::string("(a*)*(a*)*(a*)*c")}) {
    const auto parsed = FindExpression::parse(expression);
    ASSERT_TRUE(parsed) << expression;
    EXPECT_FALSE(parsed->matches(name));
    EXPECT_EQ(parsed->matches(std::string(250, 'a')), expression.back() != 'c');
  }
}

/// Whatever parses can be asked; text without special characters matches itself alone.
TEST(FindExpression, randomExpressionsNeitherCrashNorHang) {
  std::mt19937 random(7);
  const std::string alphabet = "ab?*+[]^-|()\\{:1";
  int parsedOnes = 0;
  for (int round = 0; round < 5000; ++round) {
    std::string expression(random() % 24, ' ');
    for (char& c : expression) c = alphabet[random() % alphabet.size()];
    const auto parsed = FindExpression::parse(expression);
    if (!parsed) continue;
    ++parsedOnes;
    (void)parsed->matches(std::string(40, 'a') + "b1");
    if (expression.find_first_of("?*+[]^-|()\\{") == std::string::npos) {
      EXPECT_TRUE(parsed->matches(expression)) << expression;
      EXPECT_FALSE(parsed->matches(expression + "x")) << expression;
    }
  }
  EXPECT_GT(parsedOnes, 200);
}

}  // namespace
}  // namespace lumodevice::io
