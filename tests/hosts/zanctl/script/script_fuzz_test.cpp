#include <random>

#include "hosts/zanctl/script/words.hpp"
#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

/// Words that are nearly right reach further into the instructions than bytes at random.
constexpr std::array kPieces = {"get",
                                "put",
                                "call",
                                "set",
                                "click",
                                "type",
                                "select",
                                "key",
                                "drag",
                                "press",
                                "area",
                                "print",
                                "Text2",
                                "Combo2",
                                "cmdSet(3)",
                                "cmdSet",
                                "List1",
                                "Timer1",
                                "optVISA",
                                ".Text",
                                ".Value",
                                ".List(0",
                                ")",
                                "(",
                                "IDN",
                                "SendCmd",
                                "nextCmd",
                                "True",
                                "-1",
                                "99",
                                "Enter",
                                "\"",
                                "\"a b\"",
                                "\\x4",
                                "\\",
                                "#",
                                " ",
                                "\t",
                                "\xCE\xA9",
                                ".",
                                "chkOCP",
                                "ZANCtrl",
                                ".MousePointer",
                                "bDevAvaliable",
                                "\x01",
                                "0",
                                ".Enabled",
                                "DisplayCmd"};

class ScriptFuzz : public ProgramTest {
 protected:
  std::mt19937 random{20240229};

  std::size_t upTo(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random);
  }
  std::string line() {
    std::string text;
    for (std::size_t i = upTo(6); i > 0; --i) {
      text += kPieces.at(upTo(kPieces.size() - 1));
      text += upTo(3) > 0 ? " " : "";
    }
    return text;
  }
  std::string bytes() {
    std::string text;
    for (std::size_t i = upTo(20); i > 0; --i) {
      text += static_cast<char>(upTo(255));
    }
    return text;
  }
};

TEST_F(ScriptFuzz, everyScriptRunsToItsEndOrEndsWithALineNumber) {
  for (int round = 0; round < 400; ++round) {
    std::string script;
    for (std::size_t i = upTo(5) + 1; i > 0; --i) {
      script += (upTo(4) > 0 ? line() : bytes()) + "\n";
    }
    const Ended ended = simulate({"run"}, script);
    if (ended.status == kDone) {
      EXPECT_EQ(ended.errors, "") << script;
    } else {
      EXPECT_EQ(ended.status, kFailed) << script;
      EXPECT_THAT(ended.errors, testing::MatchesRegex("-:[0-9]+: .+\n")) << script;
    }
  }
}

TEST_F(ScriptFuzz, quotedWordsComeBackWhateverTheyHold) {
  for (int round = 0; round < 2000; ++round) {
    const std::string word = bytes();
    std::string quoted;
    for (const char byte : word) {
      quoted += byte == '"' || byte == '\\' ? std::string{'\\', byte} : std::string{byte};
    }
    const std::vector<std::string> expected = {word};
    EXPECT_EQ(splitWords("\"" + quoted + "\""), expected);
  }
}

}  // namespace
}  // namespace zanctl
