#include "hosts/zanctl/output/escape.hpp"

#include <gtest/gtest.h>

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/script/words.hpp"

namespace zanctl {
namespace {

TEST(Escape, controlCharactersHighBytesAndTheBackslashAreEscapedAndNothingElse) {
  EXPECT_EQ(escaped("plain \"text\" ~"), "plain \"text\" ~");
  EXPECT_EQ(escaped("a\nb\rc\td\\e"), "a\\nb\\rc\\td\\\\e");
  EXPECT_EQ(escaped(std::string_view("\0\x1F\x7F\x80\xFF", 5)), "\\x00\\x1F\\x7F\\x80\\xFF");
}

TEST(Escape, everyByteComesBackFromItsEscape) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    if (byte != '"') {
      EXPECT_EQ(splitWords('"' + escaped(text) + '"'), std::vector{text}) << byte;
    }
  }
}

TEST(Escape, anUnquotedTextOfAllBytesComesBackAsOneWord) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    all += static_cast<char>(byte);
  }
  std::string quoted = escaped(all);
  quoted.insert(quoted.find('"'), "\\");
  EXPECT_EQ(splitWords('"' + quoted + '"'), std::vector{all});
}

TEST(Escape, aByteAboveAsciiIsEscapedInAnAnswerButACaptionKeepsItsUtf8) {
  const std::string resistance = "Resistance(\xCE\xA9):";
  EXPECT_EQ(escaped(resistance), "Resistance(\\xCE\\xA9):");
  EXPECT_EQ(escapedCaption(resistance), resistance);
  EXPECT_EQ(escapedCaption("5\xE2\x82\xAC \xF0\x9F\x98\x80"), "5\xE2\x82\xAC \xF0\x9F\x98\x80");
}

TEST(Escape, whatIsNoUtf8IsEscapedInACaptionToo) {
  EXPECT_EQ(escapedCaption("\xCE"), "\\xCE");                             // cut off
  EXPECT_EQ(escapedCaption("\xCE("), "\\xCE(");                           // no continuation
  EXPECT_EQ(escapedCaption("\xA9"), "\\xA9");                             // no lead
  EXPECT_EQ(escapedCaption("\xC0\xAF"), "\\xC0\\xAF");                    // not the shortest form
  EXPECT_EQ(escapedCaption("\xE0\x80\xAF"), "\\xE0\\x80\\xAF");           // not the shortest form
  EXPECT_EQ(escapedCaption("\xED\xA0\x80"), "\\xED\\xA0\\x80");           // a surrogate
  EXPECT_EQ(escapedCaption("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80");  // beyond the last
  EXPECT_EQ(escapedCaption("\xC2\x85\n\\"), "\\xC2\\x85\\n\\\\");         // a control character
}

TEST(Escape, aUtf8CharacterTakesOneColumn) {
  EXPECT_EQ(columns(""), 0U);
  EXPECT_EQ(columns("R(\xCE\xA9)"), 4U);
}

TEST(Words, areSeparatedByBlanksAndTabs) {
  const std::vector<std::string> expected = {"set", "txtInput(3).Text", "1.5"};
  EXPECT_EQ(splitWords("set txtInput(3).Text 1.5"), expected);
  EXPECT_EQ(splitWords("  set\t txtInput(3).Text  1.5 \t"), expected);
}

TEST(Words, blankLinesAndCommentsHaveNone) {
  EXPECT_TRUE(splitWords("").empty());
  EXPECT_TRUE(splitWords(" \t ").empty());
  EXPECT_TRUE(splitWords("# get IDN").empty());
  EXPECT_TRUE(splitWords("  #").empty());
}

TEST(Words, aHashBehindTheFirstWordIsPartOfAWord) {
  const std::vector<std::string> expected = {"print", "#1"};
  EXPECT_EQ(splitWords("print #1"), expected);
}

TEST(Words, quotesHoldBlanksAndEscapes) {
  const std::vector<std::string> expected = {"print", "a b\n\r\t\"\\\x01z", ""};
  EXPECT_EQ(splitWords(R"(print "a b\n\r\t\"\\\x01z" "")"), expected);
}

TEST(Words, hexadecimalDigitsMayBeOfEitherCase) {
  EXPECT_EQ(splitWords(R"("\xfF")"), std::vector{std::string("\xFF")});
}

TEST(Words, aBackslashOutsideQuotesStandsForItself) {
  EXPECT_EQ(splitWords(R"(C:\temp)"), std::vector{std::string("C:\\temp")});
}

struct BadLine {
  const char* line;
  const char* message;
};

class BadWords : public testing::TestWithParam<BadLine> {};

TEST_P(BadWords, areReported) {
  try {
    (void)splitWords(GetParam().line);
    FAIL() << "taken: " << GetParam().line;
  } catch (const ScriptMistake& mistake) {
    EXPECT_STREQ(mistake.what(), GetParam().message);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, BadWords,
    testing::Values(
        BadLine{"print \"open", "the closing quote is missing"},
        BadLine{"print \"", "the closing quote is missing"},
        BadLine{"print \"open\\\"", "the closing quote is missing"},
        BadLine{"print \"a\"b", "a blank is missing behind the closing quote"},
        BadLine{"print \"a\\", "a backslash at the end of the line"},
        BadLine{"print \"\\q\"", "unknown escape \\q"},
        BadLine{"print \"\\\x07\"", "unknown escape \\\\x07"},
        BadLine{"print \"\\x\"", "\\x needs two hexadecimal digits"},
        BadLine{"print \"\\x1\"", "\\x needs two hexadecimal digits"},
        BadLine{"print \"\\x1g\"", "\\x needs two hexadecimal digits"},
        BadLine{"print \"\\x-1\"", "\\x needs two hexadecimal digits"},
        BadLine{"print \"\\x", "\\x needs two hexadecimal digits"},
        BadLine{"print a\"b",
                "a quote inside the word a\"b; put the whole word into quotes and write \\\" for "
                "the inner one"}));

}  // namespace
}  // namespace zanctl
