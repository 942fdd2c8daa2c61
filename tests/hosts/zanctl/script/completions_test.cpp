#include "hosts/zanctl/script/completions.hpp"

#include <gmock/gmock.h>

#include "lumodevice/form/panel_surface.hpp"

namespace zanctl {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class CompletionsOf : public testing::Test {
 protected:
  const lumodevice::form::PanelSurface panel;
  std::vector<std::string> of(std::string_view line) { return completionsOf(line, panel); }
};

TEST_F(CompletionsOf, theFirstWordAreInstructions) {
  EXPECT_THAT(of("pr"), ElementsAre("press", "print"));
  EXPECT_THAT(of(""), Contains("wait"));
  EXPECT_THAT(of("nothing"), IsEmpty());
}

TEST_F(CompletionsOf, aMemberAreThoseThatGoWithTheInstruction) {
  EXPECT_THAT(of("call Auto"), ElementsAre("AutoConnect"));
  EXPECT_THAT(of("put Auto"), ElementsAre("AutoQuery"));
  EXPECT_THAT(of("  get   isC"), ElementsAre("isConnected"));
}

TEST_F(CompletionsOf, aControlAreTheControlsOfThePanel) {
  EXPECT_THAT(of("click cmdSet(1"), Contains("cmdSet(17)"));
  EXPECT_THAT(of("get cmdSendCm"), ElementsAre("cmdSendCmd."));
  EXPECT_THAT(of("set cmdSendCm"), ElementsAre("cmdSendCmd."));
}

TEST_F(CompletionsOf, aListAreListBoxesAlone) {
  EXPECT_THAT(of("drag L"), Contains("List2"));
  EXPECT_THAT(of("drag "), Not(Contains("cmdSendCmd")));
  EXPECT_THAT(of("drag List1 CH1 L"), Contains("List2"));
}

TEST_F(CompletionsOf, aKeyAreItsNames) {
  EXPECT_THAT(of("key Text5 "), ElementsAre("Enter", "Up", "Down"));
}

TEST_F(CompletionsOf, whatIsFreeTextAreNone) {
  EXPECT_THAT(of("print c"), IsEmpty());
  EXPECT_THAT(of("type Text2 c"), IsEmpty());
  EXPECT_THAT(of("click cmdSet(3) c"), IsEmpty());
  EXPECT_THAT(of("nothing c"), IsEmpty());
}

}  // namespace
}  // namespace zanctl
