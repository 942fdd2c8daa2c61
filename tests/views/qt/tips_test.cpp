#include <gtest/gtest.h>
#include <map>
#include <string>

#include "lumodevice/form/control_rows.hpp"
#include "tests/views/qt/panel_window.hpp"

// The tool tip of a control names the command that really goes out when an operator uses it.
namespace lumodevice::qt {
namespace {

using support::PanelWindow;
using toolkit::Control;

class TheToolTip : public PanelWindow {
 protected:
  TheToolTip() {
    bench.connect();
    bench.zan().ShowControl();
    (void)bench.sent();
  }

  void expectSent(const Control& of) {
    const std::string tip = view.widgetOf(of)->toolTip().toStdString();
    const std::size_t words = tip.rfind(": ");
    const std::string command = words == std::string::npos ? tip : tip.substr(words + 2);
    const std::string sent = bench.sent();
    EXPECT_NE(sent.find(command), std::string::npos)
        << of.fullName() << " promises " << tip << " and sends " << sent;
    ++checked;
  }

  int checked = 0;
};

TEST_F(TheToolTip, ofEveryModeAndItsSettingsNamesWhatIsSent) {
  // Which mode brings each of the frames into view.
  const std::map<std::string, int> modes = {{"FrameCCStatic", 0},
                                            {"FrameCV", 2},
                                            {"FrameCRStatic", 3},
                                            {"fraCCDynamic", 5},
                                            {"fraCRDynamic", 7}};
  for (int i = 8; i >= 0; --i) {
    ASSERT_TRUE(hand.click(control("optMode", i)));
    expectSent(control("optMode", i));
  }
  for (const form::SettingRow& row : form::kSettings) {
    if (const auto mode = modes.find(std::string(row.frame)); mode != modes.end()) {
      hand.click(control("optMode", mode->second));
    }
    ASSERT_TRUE(hand.type(control("txtInput", row.index), "1.25"));
    (void)bench.sent();
    ASSERT_TRUE(hand.click(control("cmdSet", row.index)));
    expectSent(control("cmdSet", row.index));
    // The Enter key in the box does the same.
    ASSERT_TRUE(hand.press(control("txtInput", row.index), toolkit::Key::Enter));
    expectSent(control("txtInput", row.index));
  }
  EXPECT_EQ(checked, 9 + 2 * 29);
}

TEST_F(TheToolTip, ofEverySwitchNamesWhatIsSent) {
  for (const char* name : {"chkVON", "chkOCP", "chkOVP", "chkUVP", "chkGoNogo", "chkLoad"}) {
    ASSERT_TRUE(hand.click(control(name)));
    expectSent(control(name));
  }
  ASSERT_TRUE(hand.select(control("cmbVolRange"), 0));
  expectSent(control("cmbVolRange"));
  ASSERT_TRUE(hand.click(control("optMode", 2)));
  ASSERT_TRUE(hand.select(control("cmbCVFreq"), 0));
  expectSent(control("cmbCVFreq"));
  ASSERT_TRUE(hand.select(control("cmbChannel"), 0));
  expectSent(control("cmbChannel"));
}

TEST_F(TheToolTip, ofTheConsoleNamesWhatIsSent) {
  bench.zan().ShowConnect();
  ASSERT_TRUE(hand.click(control("Command1")));
  expectSent(control("Command1"));
}

}  // namespace
}  // namespace lumodevice::qt
