#include "bindings/automation/text.hpp"

#include <gtest/gtest.h>
#include <string>

namespace lumodevice::automation {
namespace {

std::string allBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

TEST(AutomationText, everyByteIsTheCharacterOfItsNumberAndComesBack) {
  const std::u16string text = toAutomation(allBytes());
  ASSERT_EQ(text.size(), 256U);
  for (std::size_t i = 0; i < text.size(); ++i) {
    EXPECT_EQ(text[i], i);
  }
  EXPECT_EQ(fromAutomation(text), allBytes());
}

TEST(AutomationText, charactersThatAreNoBytesBecomeQuestionMarks) {
  EXPECT_EQ(fromAutomation(u"2 \u03A9, 3 \u20AC"), "2 ?, 3 ?");
  EXPECT_EQ(fromAutomation(u"\U0001F50B"), "??");
}

TEST(AutomationText, anEmptyTextStaysOne) {
  EXPECT_EQ(toAutomation(""), u"");
  EXPECT_EQ(fromAutomation({}), "");
}

}  // namespace
}  // namespace lumodevice::automation
