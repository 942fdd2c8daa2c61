#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/form/table_checks.hpp"
#include "lumodevice/toolkit/properties.hpp"
#include "lumodevice/toolkit/reach.hpp"

namespace lumodevice::form {
namespace {

using toolkit::Control;
using toolkit::Kind;

constexpr const char* kModeFrames[] = {"FrameCCStatic", "fraCCDynamic", "FrameCRStatic",
                                       "fraCRDynamic", "FrameCV"};
constexpr int kTwipsPerPoint = 20;

class PanelLook : public testing::Test {
 protected:
  [[nodiscard]] std::vector<const Control*> controls() const {
    std::vector<const Control*> all;
    for (const auto& control : surface.controls()) {
      all.push_back(control.get());
    }
    return all;
  }

  /// The controls of a frame that an operator works with, as the Tab key walks them.
  [[nodiscard]] std::string walk(std::string_view frame) const {
    std::map<int, std::string> stops;
    for (const Control* control : controls()) {
      if (control->container() != nullptr && control->container()->name() == frame &&
          checks::isWorkedWith(control->kind())) {
        stops[control->tabIndex()] = control->fullName();
      }
    }
    std::string text;
    for (const auto& [index, name] : stops) {
      text += (text.empty() ? "" : " ") + name;
    }
    return text;
  }

  /// Each letter that goes somewhere now, with all that it goes to.
  [[nodiscard]] std::map<char, std::set<std::string>> letters() const {
    std::map<char, std::set<std::string>> found;
    for (const Control* control : controls()) {
      const int position = control->look().mnemonic;
      if (position == toolkit::kNoMnemonic || !toolkit::reachable(surface, *control)) {
        continue;
      }
      const char letter =
          toolkit::readProperty(*control, "Caption").at(static_cast<std::size_t>(position));
      found[static_cast<char>(std::tolower(static_cast<unsigned char>(letter)))].insert(
          control->fullName());
    }
    return found;
  }

  void expectEachLetterOnce(const std::string& state) const {
    for (const auto& [letter, names] : letters()) {
      EXPECT_EQ(names.size(), 1U) << letter << ", " << state << ": " << *names.begin() << " and "
                                  << *names.rbegin();
    }
  }

  void showModeFrame(std::string_view shown) {
    for (const char* frame : kModeFrames) {
      surface.find(frame)->setVisible(frame == shown);
    }
  }

  /// What a host shows with DisplayCmd.
  void showHidden() {
    for (toolkit::CommandButton* button : {&form.cmdGetCTRLScrn, &form.cmdWork}) {
      button->setVisible(true);
    }
    form.TXT.setVisible(true);
  }

  toolkit::VirtualLoop loop;
  Controls form{loop};
  toolkit::Surface& surface = form.surface();
};

TEST_F(PanelLook, hasAToolTipForEverythingThatIsWorkedWith) {
  for (const Control* control : controls()) {
    if (checks::isWorkedWith(control->kind())) {
      EXPECT_FALSE(control->look().toolTip.empty()) << control->fullName();
    }
  }
}

TEST_F(PanelLook, namesTheCommandOfTheTagInTheTip) {
  int tagged = 0;
  for (const Control* control : controls()) {
    // UVP has no switch on the instrument; its level is what is sent.
    if (!control->tag().empty() && control != &form.chkUVP) {
      ++tagged;
      EXPECT_EQ(control->look().toolTip,
                withoutBlanksBehind(kCommandTexts.at(std::stoul(control->tag()) - 1)))
          << control->fullName();
    }
  }
  EXPECT_EQ(tagged, 20 + 2 * 29);
  EXPECT_EQ(form.chkUVP.look().toolTip, ":CONF:PROT:UVP:LEV");
}

TEST_F(PanelLook, followsTheCommandThatASettingIsGiven) {
  form.setCommand(27, Command(":SPEC:CURR:H"));
  EXPECT_EQ(form.txtInput(27).tag(), "42");
  EXPECT_EQ(form.txtInput(27).look().toolTip, ":SPEC:CURR:H");
  EXPECT_EQ(form.cmdSet(27).look().toolTip, ":SPEC:CURR:H");
  EXPECT_EQ(form.txtInput(27).look().accessibleName, "GoNogo High");
}

TEST_F(PanelLook, usesEachMnemonicOnceInEveryStateOfThePanel) {
  showHidden();
  expectEachLetterOnce("connection panel");
  EXPECT_EQ(letters()['a'], std::set<std::string>{"cmdAutoConnVISA"});
  form.frmSetting.setVisible(false);
  for (const char* frame : kModeFrames) {
    for (const bool grouping : {false, true}) {
      for (const bool screen : {false, true}) {
        showModeFrame(frame);
        form.fraParallel.setVisible(grouping);
        form.Picture1.setVisible(screen);
        form.Image1.setVisible(screen);
        expectEachLetterOnce(frame);
      }
    }
  }
  form.fraParallel.setVisible(false);
  EXPECT_EQ(letters()['f'], std::set<std::string>{"lblFrequence"});
  form.frmSetting.setVisible(true);
  form.frmSetting.bringToFront();
  expectEachLetterOnce("connection panel over all");
}

TEST_F(PanelLook, keepsTheLoadsLetterWhateverItsCaptionSays) {
  const auto letter = static_cast<std::size_t>(form.chkLoad.look().mnemonic);
  EXPECT_EQ(form.chkLoad.caption().at(letter), 'L');
  EXPECT_EQ(std::string("CHAN LOAD ON").at(letter), 'L');
}

TEST_F(PanelLook, leadsFromALabelsLetterToTheFieldBesideIt) {
  const auto all = controls();
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i]->kind() == Kind::Label && all[i]->look().mnemonic != toolkit::kNoMnemonic) {
      ASSERT_LT(i + 1, all.size());
      EXPECT_EQ(all[i + 1]->container(), all[i]->container()) << all[i]->fullName();
      EXPECT_TRUE(all[i + 1]->kind() == Kind::TextBox || all[i + 1]->kind() == Kind::ComboBox)
          << all[i]->fullName();
    }
  }
}

TEST_F(PanelLook, reachesEveryButtonButTheSetButtonsByALetter) {
  for (const Control* control : controls()) {
    if (control->kind() == Kind::CommandButton && !control->index() && control->visible()) {
      EXPECT_NE(control->look().mnemonic, toolkit::kNoMnemonic) << control->fullName();
    }
  }
}

TEST_F(PanelLook, givesEveryControlOnePlaceInTheTabOrder) {
  std::set<int> places;
  for (const Control* control : controls()) {
    EXPECT_TRUE(places.insert(control->tabIndex()).second) << control->fullName();
  }
  EXPECT_EQ(*places.begin(), 0);
  EXPECT_EQ(*places.rbegin(), static_cast<int>(places.size()) - 1);
}

TEST_F(PanelLook, walksAFrameToItsEndBeforeItLeavesIt) {
  std::vector<const Control*> open;
  for (const Control* control : controls()) {
    while (!open.empty() && open.back() != control->container()) {
      open.pop_back();
    }
    EXPECT_EQ(open.empty(), control->container() == nullptr) << control->fullName();
    if (checks::isContainer(control->kind())) {
      open.push_back(control);
    }
  }
}

TEST_F(PanelLook, walksItsFramesAsTheyAreRead) {
  EXPECT_EQ(walk("FrameCV"),
            "txtInput(11) cmdSet(11) txtInput(12) cmdSet(12) txtInput(13) cmdSet(13) cmbCVFreq");
  EXPECT_EQ(walk("fraOverChk"),
            "chkVON txtInput(10) cmdSet(10) chkOCP txtInput(24) cmdSet(24) chkOVP txtInput(25) "
            "cmdSet(25) chkUVP txtInput(26) cmdSet(26) chkGoNogo txtInput(27) cmdSet(27) "
            "txtInput(28) cmdSet(28)");
  EXPECT_EQ(walk("fraParallel"),
            "List1 List2 List3 optSync optPara cmbParaDisp cmdParaOK cmdParaCancel");
  EXPECT_EQ(walk("fraVISA"),
            "optVisa1 optVisa2 cmbVISARes txtVISATimeout cmdAutoConnVISA cmdConnVISA");
}

TEST_F(PanelLook, speaksOfEveryControlByANameOfItsOwn) {
  std::set<std::pair<const Control*, std::string>> spoken;
  for (const Control* control : controls()) {
    if (!checks::isWorkedWith(control->kind())) {
      continue;
    }
    const std::string& name = control->look().accessibleName;
    EXPECT_FALSE(name.empty()) << control->fullName();
    EXPECT_FALSE(name.ends_with(':')) << control->fullName();
    // The Go/NoGo switch and others share their captions with the limits beside them.
    const bool isSwitch = control->kind() == Kind::CheckBox;
    EXPECT_TRUE(isSwitch || spoken.insert({control->container(), name}).second)
        << control->fullName() << " " << name;
  }
  EXPECT_EQ(form.cmbChannel.look().accessibleName, "Channel");
  EXPECT_EQ(form.txtInput(10).look().accessibleName, "VON Latch");
  EXPECT_EQ(form.txtInput(14).look().accessibleName, "A Value(Ω)");
  EXPECT_EQ(form.cmdSet(24).look().accessibleName, "Set OCP");
  EXPECT_EQ(form.List2.look().accessibleName, "Group1");
  EXPECT_EQ(form.panel.look().accessibleName, "ZAN Load Control");
}

TEST_F(PanelLook, showsReadingsLargeAndNumbersOnTheRight) {
  for (const toolkit::TextBox* box :
       {&form.txtVoltage(0), &form.txtCurrent(0), &form.txtPower(0)}) {
    EXPECT_EQ(box->look().fontSize, 20);
    EXPECT_TRUE(box->look().bold);
    EXPECT_EQ(box->look().alignment, toolkit::Alignment::Right);
    EXPECT_EQ(box->look().colorRole, toolkit::ColorRole::Value);
  }
  EXPECT_EQ(form.txtInput(0).look().alignment, toolkit::Alignment::Right);
  EXPECT_EQ(form.txtReturn.look().alignment, toolkit::Alignment::Left);
  EXPECT_EQ(form.chkLoad.look().colorRole, toolkit::ColorRole::Warning);
  EXPECT_EQ(form.Label14.look().colorRole, toolkit::ColorRole::Heading);
}

TEST_F(PanelLook, hasRoomForItsLetters) {
  for (const Control* control : controls()) {
    const int lineHeight = control->look().fontSize * kTwipsPerPoint * 6 / 5;
    EXPECT_LE(lineHeight, control->place().height) << control->fullName();
  }
}

TEST_F(PanelLook, hasEnterSetAValueAndConnect) {
  for (const Control* control : controls()) {
    const std::string& button = control->look().enterClicks;
    const bool setting = control->name() == "txtInput";
    const std::set<std::string> connecting = {"cmbVISARes", "Text1", "Combo2"};
    EXPECT_EQ(!button.empty(), setting || connecting.contains(control->name()))
        << control->fullName();
    if (setting) {
      EXPECT_EQ(button, "cmdSet(" + std::to_string(*control->index()) + ")");
    }
  }
  EXPECT_EQ(form.cmbVISARes.look().enterClicks, "cmdConnVISA");
  EXPECT_EQ(form.Text1.look().enterClicks, "Command2");
}

TEST_F(PanelLook, takesTheCommandBoxWhenItIsTypedToTheEnd) {
  for (const Control* control : controls()) {
    EXPECT_EQ(control->look().typedWhole, control == &form.TXT) << control->fullName();
  }
}

TEST_F(PanelLook, letsBeTypedWhatNoListCanHold) {
  std::set<std::string> typedInto;
  for (const Control* control : controls()) {
    if (control->kind() == Kind::ComboBox &&
        control->look().comboStyle == toolkit::ComboStyle::Editable) {
      typedInto.insert(control->fullName());
    }
  }
  EXPECT_EQ(typedInto, (std::set<std::string>{"Combo2", "cmbVISARes"}));
}

}  // namespace
}  // namespace lumodevice::form
