#include <gtest/gtest.h>
#include <string>

#include "lumodevice/form/control_rows.hpp"
#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::PanelBench;

class ToolTips : public testing::Test {
 protected:
  ToolTips() { bench.connect(); }

  [[nodiscard]] std::string tip(const std::string& control) {
    return bench.read(control, "ToolTipText");
  }

  /// What went out last begins with the command of the tip.
  void expectSent(const std::string& control) {
    const std::string sent = bench.sent();
    EXPECT_FALSE(tip(control).empty()) << control;
    EXPECT_TRUE(sent.starts_with(tip(control))) << control << " sent " << sent;
  }

  PanelBench bench;
};

TEST_F(ToolTips, nameWhatTheSetButtonsSend) {
  for (int i = 0; i < static_cast<int>(form::kSettings.size()); ++i) {
    (void)bench.sent();
    bench.set(i, "1");
    expectSent("txtInput(" + std::to_string(i) + ")");
    EXPECT_EQ(tip("cmdSet(" + std::to_string(i) + ")"), tip("txtInput(" + std::to_string(i) + ")"));
  }
}

TEST_F(ToolTips, ofTheGoNogoLimitsFollowTheMode) {
  constexpr int kCcHigh = 0;
  constexpr int kCv = 2;
  bench.chooseMode(kCv);
  EXPECT_EQ(tip("txtInput(27)"), ":SPEC:CURR:H");
  EXPECT_EQ(tip("cmdSet(28)"), ":SPEC:CURR:L");
  bench.set(27, "1");
  expectSent("cmdSet(27)");
  bench.set(28, "1");
  expectSent("cmdSet(28)");
  bench.chooseMode(kCcHigh);
  EXPECT_EQ(tip("cmdSet(27)"), ":SPEC:VOLT:H");
  EXPECT_EQ(tip("txtInput(28)"), ":SPEC:VOLT:L");
}

TEST_F(ToolTips, nameWhatTheSwitchesSend) {
  bench.set(26, "0");
  for (const char* name : {"chkOCP", "chkOVP", "chkGoNogo", "chkVON", "chkLoad", "chkUVP"}) {
    (void)bench.sent();
    bench.box(name).setValue(1 - bench.box(name).value());
    expectSent(name);
  }
  (void)bench.sent();
  bench.combo("cmbVolRange").setListIndex(1);
  expectSent("cmbVolRange");
}

TEST_F(ToolTips, nameWhatTheModesSend) {
  for (const int i : {1, 2, 3, 4, 5, 6, 7, 8, 0}) {
    (void)bench.sent();
    bench.mode(i).setValue(true);
    expectSent("optMode(" + std::to_string(i) + ")");
  }
}

}  // namespace
}  // namespace lumodevice::panel
