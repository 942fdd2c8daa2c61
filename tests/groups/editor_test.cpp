#include <gtest/gtest.h>

#include "tests/groups/group_bench.hpp"

namespace lumodevice::groups {
namespace {

using support::kLinks;
using support::kNoAnswerBox;
using support::Over;

class Editor : public testing::TestWithParam<Over> {
 protected:
  /// Opens the frame and returns what that sends.
  std::string open() {
    (void)bench.journal();
    bench.control<toolkit::CommandButton>("cmdParalle").click.raise();
    return bench.sent();
  }
  bool synchronised() { return bench.control<toolkit::OptionButton>("optSync").value(); }
  GroupBench bench;
};

INSTANTIATE_TEST_SUITE_P(Links, Editor, testing::ValuesIn(kLinks));

TEST_P(Editor, opensInFrontOfThePanelAndCloses) {
  bench.connectWith(GetParam(), {});
  auto& frame = bench.control<toolkit::Frame>("fraParallel");
  EXPECT_EQ(open(), "");
  EXPECT_TRUE(frame.visible());
  for (const auto& control : bench.zan().surface().controls()) {
    if (control->container() == frame.container() && control.get() != &frame) {
      EXPECT_LT(control->zOrder(), frame.zOrder()) << control->fullName();
    }
  }
  (void)bench.journal();
  bench.click("cmdParaCancel");
  EXPECT_FALSE(frame.visible());
  EXPECT_EQ(bench.sent(), "");
}

TEST_P(Editor, asksForTheModeWhenThereIsAGroup) {
  bench.connectWith(GetParam(), {"CH1"}, {"CH3"});
  EXPECT_EQ(open(), "");
  bench.fill("List2", {"CH1", "CH2"});
  EXPECT_EQ(open(), ":CONF:PAR:MODE?\n");
  bench.fill("List2", {});
  bench.fill("List3", {"CH1", "CH2", "CH3"});
  EXPECT_EQ(open(), ":CONF:PAR:MODE?\n");
  EXPECT_EQ(open(), ":CONF:PAR:MODE?\n") << "asked anew each time";
}

TEST_P(Editor, showsTheModeThatTheInstrumentNames) {
  bench.connectWith(GetParam(), {"CH1", "CH2"});
  for (const auto& [answer, sync] : {std::pair{"SYNC\n", true},
                                     {"PARA\n", false},
                                     {"SYNC\n", true},
                                     {"sync\n", false},
                                     {"SYNC\n", true},
                                     {"SYNC \n", false},
                                     {"SYNC\n", true},
                                     {"0\n", false}}) {
    bench.instrument.on(":CONF:PAR:MODE?", answer);
    (void)open();
    EXPECT_EQ(synchronised(), sync) << answer;
    EXPECT_EQ(bench.control<toolkit::OptionButton>("optPara").value(), !sync);
  }
}

TEST_P(Editor, takesNoAnswerForParallel) {
  bench.connectWith(GetParam(), {"CH1", "CH2"});
  bench.click("optSync");
  bench.instrument.on(":CONF:PAR:MODE?", support::silence());
  EXPECT_EQ(open(), std::string(":CONF:PAR:MODE?\n") + kNoAnswerBox);
  EXPECT_FALSE(synchronised());
  EXPECT_EQ(bench.read("fraParallel", "Visible"), "True");
}

TEST(UnconnectedEditor, opensAndCloses) {
  GroupBench bench;
  bench.fill("List2", {"CH1", "CH2"});
  bench.control<toolkit::TextBox>("txtReturn").setText("SYNC");
  bench.control<toolkit::CommandButton>("cmdParalle").click.raise();
  EXPECT_EQ(bench.text("TXT"), ":CONF:PAR:MODE?") << "though it cannot be sent";
  EXPECT_EQ(bench.read("fraParallel", "Visible"), "True");
  EXPECT_EQ(bench.read("optSync", "Value"), "False") << "an answer of an earlier link is none";
  bench.click("cmdParaCancel");
  EXPECT_EQ(bench.read("fraParallel", "Visible"), "False");
  EXPECT_EQ(bench.journal(), "");
}

TEST(UnconnectedEditor, sendsNothingAndStaysOpen) {
  GroupBench bench;
  bench.fill("List2", {"CH1", "CH2"});
  bench.control<toolkit::Frame>("fraParallel").setVisible(true);
  bench.click("cmdParaOK");
  EXPECT_EQ(bench.journal(), "");
  EXPECT_EQ(bench.text("TXT"), "");
  EXPECT_EQ(bench.read("fraParallel", "Visible"), "True");
  EXPECT_EQ(bench.lists(), "|CH1 CH2|");
}

}  // namespace
}  // namespace lumodevice::groups
