#include "simulator/find_expression.hpp"

#include <gtest/gtest.h>
#include <string>

using zansim::findExpressionMatches;
using zansim::isFindExpression;

TEST(FindExpression, theUsualOnesFindWhatTheyName) {
  struct Case {
    const char* expression;
    const char* name;
    bool found;
  };
  for (const Case& c : {Case{"?*INSTR", "USB0::0x1::0x2::A::INSTR", true},
                        Case{"?*", "ANY", true},
                        Case{"?*", "", true},
                        Case{"?+", "", false},
                        Case{"?*INSTR", "TCPIP0::h::5::SOCKET", false},
                        Case{"?*instr", "ASRL1::INSTR", true},
                        Case{"?*INSTR", "asrl1::instr", true},
                        Case{"GPIB[0-9]*::?*INSTR", "GPIB0::5::INSTR", true},
                        Case{"GPIB[0-9]*::?*INSTR", "GPIB::5::INSTR", true},
                        Case{"GPIB[0-9]*::?*INSTR", "GPIB-VXI0::5::INSTR", false},
                        Case{"GPIB[0-9]+::?*", "GPIB::5::INSTR", false},
                        Case{"GPIB[^1]::?*", "GPIB0::5::INSTR", true},
                        Case{"GPIB[^01]::?*", "GPIB0::5::INSTR", false},
                        Case{"(ASRL|USB)?*", "USB0::A::INSTR", true},
                        Case{"(ASRL|USB)?*", "GPIB0::1::INSTR", false},
                        Case{"ASRL?*|USB?*", "USB0::A::INSTR", true},
                        Case{"USB", "USB0", false},
                        Case{"(AB)+", "ABAB", true},
                        Case{"(AB)+", "ABA", false},
                        Case{"A\\?B", "A?B", true},
                        Case{"A\\?B", "AXB", false},
                        Case{"[a-c]x", "Bx", true},
                        Case{"AB*", "A", true},
                        Case{"AB+", "A", false}}) {
    EXPECT_TRUE(isFindExpression(c.expression)) << c.expression;
    EXPECT_EQ(findExpressionMatches(c.expression, c.name), c.found)
        << c.expression << " " << c.name;
  }
}

TEST(FindExpression, whatCannotBeReadIsRefused) {
  for (const char* const expression :
       {"", "*", "+A", "(A", "A)", "()", "A|", "|A", "[A", "A]", "A\\",
        "?*{VI_ATTR_TMO_VALUE == 1}", "((((((((((A))))))))))"}) {
    EXPECT_FALSE(isFindExpression(expression)) << expression;
  }
  EXPECT_FALSE(isFindExpression(std::string(300, 'A')));
}

TEST(FindExpression, nestedRepetitionsStayCheap) {
  const std::string name(200, 'A');
  EXPECT_FALSE(findExpressionMatches("((((A*)*)*)*)*B", name));
  EXPECT_TRUE(findExpressionMatches("((((A+)+)+)+)+", name));
}
