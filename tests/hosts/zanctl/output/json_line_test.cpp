#include "hosts/zanctl/output/json_line.hpp"

#include <gtest/gtest.h>

namespace zanctl {
namespace {

TEST(JsonLine, isAsciiInOneLineInTheOrderOfItsMembers) {
  EXPECT_EQ(jsonLine({{"z", "a\n\"\\"}, {"a", "\xCE\xA9"}, {"n", 12.5971}, {"none", nullptr}}),
            R"({"z":"a\n\"\\","a":"\u03a9","n":12.5971,"none":null})");
}

TEST(JsonLine, ofATextThatIsNoUtf8IsWrittenAllTheSame) {
  EXPECT_EQ(jsonLine({{"file",
                       "a\xFF"
                       "b"}}),
            R"({"file":"a\ufffdb"})");
}

TEST(JsonLine, ofATextOfTheWireHasACharacterForEachByte) {
  EXPECT_EQ(jsonLine({{"answer", wireText("\x01\x7F\x80\xFF")}}),
            R"({"answer":"\u0001\u007f\u0080\u00ff"})");
}

TEST(JsonLine, ofAnAnswerThatIsNoNumberIsNull) {
  EXPECT_EQ(
      jsonLine({{"a", wireNumber(" 0.0000 ")}, {"b", wireNumber("")}, {"c", wireNumber("x")}}),
      R"({"a":0.0,"b":null,"c":null})");
}

}  // namespace
}  // namespace zanctl
