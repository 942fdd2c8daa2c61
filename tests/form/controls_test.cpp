#include "lumodevice/form/controls.hpp"

#include <gtest/gtest.h>
#include <set>
#include <string>

#include "lumodevice/form/control_rows.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/toolkit/properties.hpp"

namespace lumodevice::form {
namespace {

using toolkit::readProperty;

class PanelForm : public testing::Test {
 protected:
  [[nodiscard]] std::string property(std::string_view control, const char* name,
                                     std::optional<int> index = {}) {
    const toolkit::Control* found = form.surface().find(control, index);
    return found == nullptr ? "no " + std::string(control) : readProperty(*found, name);
  }

  toolkit::VirtualLoop loop;
  Controls form{loop};
};

TEST_F(PanelForm, hasAllRowsOfItsTables) {
  std::size_t labels = 0;
  for (const SettingRow& row : kSettings) {
    labels += row.caption.empty() ? 0U : 1U;
  }
  EXPECT_EQ(form.surface().controls().size(), kControls.size() + 2 * kSettings.size() + labels);
}

TEST_F(PanelForm, putsEveryControlIntoAContainerThatIsThere) {
  for (const auto& control : form.surface().controls()) {
    if (control->kind() != toolkit::Kind::Form) {
      EXPECT_NE(control->container(), nullptr) << control->fullName();
    }
  }
}

TEST_F(PanelForm, placesNothingOutsideItsContainer) {
  for (const auto& control : form.surface().controls()) {
    if (control->container() == nullptr || control->kind() == toolkit::Kind::Timer) {
      continue;
    }
    const toolkit::Place& inside = control->place();
    const toolkit::Place& outside = control->container()->place();
    EXPECT_GE(inside.left, 0) << control->fullName();
    EXPECT_GE(inside.top, 0) << control->fullName();
    EXPECT_GT(inside.width, 0) << control->fullName();
    EXPECT_GT(inside.height, 0) << control->fullName();
    EXPECT_LE(inside.left + inside.width, outside.width) << control->fullName();
    EXPECT_LE(inside.top + inside.height, outside.height) << control->fullName();
  }
}

TEST_F(PanelForm, overlapsControlsOfOneFrameOnlyWhereTheyTakeTurns) {
  // The mode frames, the screen and what is laid over the panel share their places on purpose.
  const std::set<std::string> layered = {"FrameCCStatic", "fraCCDynamic", "FrameCRStatic",
                                         "fraCRDynamic",  "FrameCV",      "Picture1",
                                         "Image1",        "fraParallel",  "frmSetting"};
  const auto& controls = form.surface().controls();
  for (std::size_t i = 0; i < controls.size(); ++i) {
    for (std::size_t j = i + 1; j < controls.size(); ++j) {
      const toolkit::Control& a = *controls[i];
      const toolkit::Control& b = *controls[j];
      if (a.container() != b.container() || layered.contains(a.name()) ||
          layered.contains(b.name())) {
        continue;
      }
      const toolkit::Place& p = a.place();
      const toolkit::Place& q = b.place();
      const bool overlap = p.left < q.left + q.width && q.left < p.left + p.width &&
                           p.top < q.top + q.height && q.top < p.top + p.height;
      EXPECT_FALSE(overlap) << a.fullName() << " and " << b.fullName();
    }
  }
}

TEST_F(PanelForm, startsWithTheVisaLibraryChosen) {
  EXPECT_TRUE(form.optVISA.value());
  EXPECT_TRUE(form.optVisa1.value());
  EXPECT_FALSE(form.optConnRS232.value());
  EXPECT_FALSE(form.optVisa2.value());
  EXPECT_TRUE(form.cmdAutoConnVISA.usable());
  EXPECT_TRUE(form.cmdConnVISA.usable());
  EXPECT_FALSE(form.cmdAuto.usable());
  EXPECT_FALSE(form.Command2.usable());
  EXPECT_FALSE(form.cmdSendCmd.usable());
}

TEST_F(PanelForm, keepsTheTwoKindsOfOptionApart) {
  form.optVisa2.setValue(true);
  EXPECT_TRUE(form.optVISA.value());
  form.optConnRS232.setValue(true);
  EXPECT_TRUE(form.optVisa2.value());
  EXPECT_FALSE(form.optVISA.value());
}

TEST_F(PanelForm, startsItsFieldsWithTheirDefaults) {
  struct Row {
    const char* control;
    const char* property;
    const char* value;
  };
  constexpr Row kRows[] = {
      {"Text2", "Text", "*IDN?"},
      {"txtReturn", "Text", ""},
      {"Text5", "Text", "200"},
      {"Text6", "Text", "35"},
      {"txtSetCmd", "Text", "*IDN?"},
      {"Text3", "Text", ""},
      {"Text4", "Text", "Text4"},
      {"TXT", "Text", ""},
      {"TXT", "Visible", "False"},
      {"txtVISATimeout", "Text", "200"},
      {"Text1", "Text", "2"},
      {"cmdSendCmd", "Caption", "Send Command"},
      {"optVISA", "Caption", "VISA"},
      {"optVisa1", "Caption", "VISA Library"},
      {"optVisa2", "Caption", "VISA COM3.0 Type Library"},
      {"cmdAutoConnVISA", "Caption", "Auto Connect"},
      {"cmdConnVISA", "Caption", "Connect to Device"},
      {"optConnRS232", "Caption", "USB / RS232"},
      {"cmdAuto", "Caption", "Auto Connect"},
      {"Command2", "Caption", "Connect to Device"},
      {"frmSetting", "Caption", "Connect"},
      {"cmdConnectOK", "Caption", "Return"},
      {"chkLoad", "Caption", "CHAN LOAD OFF"},
      {"chkAutoQuery", "Caption", "Auto Query (Per Sec)"},
      {"fraOverChk", "Caption", "Protection"},
      {"fraParallel", "Caption", "Group Setting"},
      {"cmdParaCancel", "Caption", "EXIT"},
      {"lblDragHint", "Caption", "Drag and Move Channel Item to Group1 or  Group2"},
      {"cmbVolRange", "Text", "LOW"},
      {"cmbVolRange", "List(1)", "HIGH"},
      {"cmbCVFreq", "Text", "LOW"},
      {"cmbCVFreq", "List(1)", "FAST"},
      {"cmbParaDisp", "List(3)", "S"},
      {"Timer1", "Interval", "1000"},
      {"Timer1", "Enabled", "False"},
      {"Timer2", "Interval", "150"},
      {"Timer2", "Enabled", "True"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(property(row.control, row.property), row.value) << row.control << "." << row.property;
  }
}

TEST_F(PanelForm, tagsEveryControlThatSendsWithItsCommandPosition) {
  struct Row {
    const char* control;
    int index;
    const char* tag;
  };
  constexpr Row kRows[] = {
      {"cmbChannel", kSingle, "1"},   {"optMode", 0, "2"},       {"optMode", 8, "10"},
      {"cmbCVFreq", kSingle, "24"},   {"chkOCP", kSingle, "40"}, {"chkOVP", kSingle, "41"},
      {"chkGoNogo", kSingle, "44"},   {"chkUVP", kSingle, "45"}, {"chkLoad", kSingle, "51"},
      {"cmbVolRange", kSingle, "55"}, {"chkVON", kSingle, "56"}, {"txtVoltage", 0, "48"},
      {"txtCurrent", 0, "49"},        {"txtPower", 0, "50"},     {"txtInput", 0, "11"},
      {"txtInput", 10, "57"},         {"txtInput", 13, "23"},    {"txtInput", 20, "31"},
      {"txtInput", 28, "39"},         {"cmdSet", 26, "37"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(property(row.control, "Tag",
                       row.index == kSingle ? std::nullopt : std::optional(row.index)),
              row.tag)
        << row.control << row.index;
  }
}

TEST_F(PanelForm, writesResistancesInOhms) {
  EXPECT_EQ(property("lblInput", "Caption", 14), "A Value(Ω)");
}

TEST_F(PanelForm, runsItsTimersOnTheGivenLoop) {
  int ticks = 0;
  toolkit::handle(form.Timer2.tick, [&] { ++ticks; });
  loop.runFor(std::chrono::milliseconds(450));
  EXPECT_EQ(ticks, 3);
}

}  // namespace
}  // namespace lumodevice::form
