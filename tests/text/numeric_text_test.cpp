#include <gtest/gtest.h>
#include <string>

#include "lumodevice/text/text.hpp"

namespace lumodevice::text {
namespace {

using namespace std::string_literals;

void expectNumbers(std::initializer_list<std::string> texts) {
  for (const std::string& text : texts) EXPECT_TRUE(isNumericText(text)) << '"' << text << '"';
}

void expectNone(std::initializer_list<std::string> texts) {
  for (const std::string& text : texts) EXPECT_FALSE(isNumericText(text)) << '"' << text << '"';
}

TEST(NumericText, isDigitsWithAPoint) {
  expectNumbers({"0", "5", "007", "1.5", "5.", ".5", "00.00"});
  expectNone({"", ".", "..5", "1.2.3", "1..2", "abc", "5a", "a5", "True", "0x10", "inf", "nan",
              "\0"s, "5\0"s, "5:6", "5/6"});
}

TEST(NumericText, mayHaveBlanksAroundIt) {
  expectNumbers({" 5 ", "\t5\n", "\r5\r", "\v5\f", "  5", "5  "});
  expectNone({" ", "   ", "\t", "5 5", "1 .5", "1. 5", "1 ,000"});
}

TEST(NumericText, takesTheNoBreakSpaceInItsUtf8FormAsABlank) {
  // "\302\240" is the no-break space, "\343\200\200" the ideographic one.
  expectNumbers({"\302\2405", "5\302\240", "-\302\2405"});
  expectNone({"\302\240", "\2405", "5\240", "5\302", "\3025", "5\343\200\200"});
}

TEST(NumericText, mayHaveOneSignInFrontOrBehind) {
  expectNumbers({"+5", "-5", "- 5", " - 5", "5-", "5+", "5 -", "-.5", ".5-", "-0"});
  expectNone({"-", "+", "--5", "+-5", "-5-", "5--", "5-5", "-.", "+ "});
}

TEST(NumericText, mayStandInParentheses) {
  expectNumbers({"(5)", "( 5 )", " (5) ", "(1,000.5)", "(1e5)"});
  expectNone({"((5))", "(5", "5)", "()", "(", ")", ")5(", "(5))", "(-5)", "-(5)", "(5)-", "(5-)"});
}

TEST(NumericText, mayHaveACurrencySignInFrontOrBehind) {
  expectNumbers({"$5", "-$5", "$-5", "$ 5", "$5-", "5$", "-5 $", "($5)", "$(5)", "(5$)", "(5)$"});
  expectNone({"$", "$$5", "$5$", "5$5", "-$", "\342\202\2545"});
}

TEST(NumericText, mayHaveThousandsSeparatorsBehindTheFirstDigit) {
  expectNumbers({"1,000.5", "1,2,3", "5,", "5,,", "5,.5", "1,000e3", "-1,000", "$1,000,000.00"});
  expectNone({",5", ",", "-,5", ".5,", "1.5,5", ",.5", "1e5,0"});
}

TEST(NumericText, mayHaveAnExponent) {
  expectNumbers({"1e5", "1E5", "1e+5", "1e-5", "1d5", "1D-5", "5.e1", ".5e1", "1e5 ", "1e5-"});
  expectNone({"1E", "1E+", "1D", "e5", ".e5", "1e 5", "1 e5", "1ee5", "1e5.5", "1e5e5", "1e+-5"});
}

TEST(NumericText, isNoneBeyondTheLargestDouble) {
  expectNumbers({"1e308", "1.7976931348623157e308", "1e-400", "0e400", std::string(308, '9')});
  expectNone({"1e309", "1e400", "-1e400", "1.8e308", "1e99999999999999999999",
              std::string(10'000, '9'), "$1e400"});
}

TEST(NumericText, mayBeHexadecimalOrOctal) {
  expectNumbers({"&H10", "&hff", "&HFFFF", "&HFFFFFFFF", "&O17", "&o17", "&17", " &H10 ", "&H10&",
                 "&O37777777777", "&H0000000001"});
  expectNone({"&",      "&H",    "&O",     "&H&",    "&&",          "&HG",           "&O8",
              "&8",     "-&H10", "&H-10",  "$&H10",  "(&H10)",      "& H10",         "&H 10",
              "&H10.5", "&H10%", "&H10&&", "&H10 &", "&H100000000", "&O40000000000", "H10"});
}

TEST(NumericText, takesNoTypeSuffix) {
  expectNone({"5%", "5&", "5!", "5#", "5@"});
}

TEST(NumericText, mayHaveAnyNumberOfDigits) {
  const std::string zeros(1'000'000, '0');
  const std::string blanks(1'000'000, ' ');
  expectNumbers({zeros, "0." + zeros + "5", "5" + zeros + "e-1000000", blanks + "5" + blanks});
  expectNone(
      {zeros + "x", blanks, std::string(1'000'000, '-'), "1" + std::string(1'000'000, ',') + "x"});
}

}  // namespace
}  // namespace lumodevice::text
