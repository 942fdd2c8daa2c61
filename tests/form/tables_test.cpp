#include <array>
#include <gtest/gtest.h>
#include <string>

#include "lumodevice/form/control_rows.hpp"
#include "lumodevice/form/table_checks.hpp"

// The compiler checks the form's tables. Here it is given tables with one mistake each, and must
// find it.
namespace lumodevice::form {
namespace {

/// The form's controls with one row spoilt.
constexpr auto controlsWith(std::string_view name, auto spoil) {
  auto rows = kControls;
  spoil(rows[checks::find(kControls, name)]);
  return rows;
}

constexpr auto settingsWith(std::size_t index, auto spoil) {
  auto rows = kSettings;
  spoil(rows[index]);
  return rows;
}

TEST(TheFormsTables, countTheirNames) {
  static_assert(namesCount(kControls));
  static_assert(!namesCount(controlsWith("List2", [](auto& row) { row.name = "List1"; })));
  static_assert(!namesCount(controlsWith("optMode", [](auto& row) { row.index = 1; })));
  static_assert(!namesCount(controlsWith("txtPower", [](auto& row) { row.index = 1; })));
  static_assert(!namesCount(controlsWith("TXT", [](auto& row) { row.name = "optMode"; })));
}

TEST(TheFormsTables, haveContainersFirst) {
  static_assert(containersComeFirst(kControls));
  static_assert(!containersComeFirst(
      controlsWith("chkOCP", [](auto& row) { row.container = "frmSetting"; })));
  static_assert(
      !containersComeFirst(controlsWith("chkOCP", [](auto& row) { row.container = ""; })));
  static_assert(!containersComeFirst(
      controlsWith("chkOCP", [](auto& row) { row.container = "lblChannel"; })));
  static_assert(!containersComeFirst(
      controlsWith("ZANCtrl", [](auto& row) { row.kind = toolkit::Kind::Frame; })));
}

TEST(TheFormsTables, haveSettingsThatFitTheirFrames) {
  static_assert(settingsFit(kSettings, kControls));
  static_assert(!settingsFit(settingsWith(7, [](auto& row) { row.index = 8; }), kControls));
  static_assert(!settingsFit(settingsWith(7, [](auto& row) { row.command = {}; }), kControls));
  static_assert(!settingsFit(settingsWith(7, [](auto& row) { row.frame = "fraCC"; }), kControls));
  static_assert(
      !settingsFit(settingsWith(7, [](auto& row) { row.frame = "cmbChannel"; }), kControls));
  static_assert(
      !settingsFit(settingsWith(24, [](auto& row) { row.beside = "chkLoad"; }), kControls));
  static_assert(!settingsFit(settingsWith(24, [](auto& row) { row.beside = "chk"; }), kControls));
}

TEST(TheFormsTables, haveMnemonicsFromTheirCaptions) {
  static_assert(lettersAreThere(kControls, kSettings));
  static_assert(!lettersAreThere(
      controlsWith("cmdConnect", [](auto& row) { row.details.mnemonic = 'x'; }), kSettings));
  static_assert(
      !lettersAreThere(kControls, settingsWith(3, [](auto& row) { row.mnemonic = 'x'; })));
}

TEST(TheFormsTables, haveATipForAllThatIsWorkedWith) {
  static_assert(tipsAreThere(kControls));
  static_assert(!tipsAreThere(controlsWith("cmdWork", [](auto& row) { row.details.tip = ""; })));
  static_assert(!tipsAreThere(controlsWith("chkOCP", [](auto& row) { row.command = {}; })));
}

TEST(TheFormsTables, haveButtonsForTheEnterKey) {
  static_assert(enterClicksButtons(kControls));
  static_assert(!enterClicksButtons(
      controlsWith("Text1", [](auto& row) { row.details.enterClicks = "Text2"; })));
  static_assert(!enterClicksButtons(
      controlsWith("Text1", [](auto& row) { row.details.enterClicks = "Command3"; })));
}

template <typename Text>
concept NamesACommand = requires {
  typename std::integral_constant<bool, Command(Text::kText).none()>;
};

struct Known {
  static constexpr const char* kText = ":CURR:STAT:L1";
};
struct Unknown {
  static constexpr const char* kText = ":CURR:STAT:L3";
};
struct WithItsBlank {
  static constexpr const char* kText = ":CURR:STAT:L1 ";
};

TEST(ACommand, compilesOnlyWhereItIsInTheTable) {
  static_assert(NamesACommand<Known>);
  static_assert(!NamesACommand<Unknown>);
  static_assert(!NamesACommand<WithItsBlank>);
}

TEST(ACommand, isKnownByItsTextAndNamedByItsTag) {
  EXPECT_EQ(Command(":CHAN").tag(), "1");
  EXPECT_EQ(Command(":CHAN").text(), ":CHAN");
  EXPECT_EQ(Command(":RES:DYN:LOW:RISE").tag(), "31");
  EXPECT_EQ(Command(":RES:DYN:LOW:RISE").text(), ":RES:DYN:LOW:RISE");
  EXPECT_EQ(Command(":CURR:DYN:T2?").tag(), "61");
  EXPECT_EQ(Command("").tag(), "");
  EXPECT_EQ(Command("").text(), "");
  EXPECT_TRUE(Command("").none());
}

TEST(ACommand, thatStandsInTheTableTwiceIsTheFirst) {
  EXPECT_EQ(Command(":SPEC:CURR:H").tag(), "42");
  EXPECT_EQ(Command(":SPEC:PASS").tag(), "44");
}

}  // namespace
}  // namespace lumodevice::form
