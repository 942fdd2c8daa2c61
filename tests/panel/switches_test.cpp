#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "lumodevice/toolkit/timer.hpp"
#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::kEmptyBox;
using support::kLinks;
using support::kNumberBox;
using support::linkName;
using support::Over;
using support::PanelBench;

constexpr const char* kMinimum = ":CONF:PROT:UVP:LEV MIN\n";

struct CheckRow {
  const char* control;
  const char* caption;
  std::string prefix;
};
const auto kChecks = std::to_array<CheckRow>({{"chkOCP", "OCP", ":CONF:PROT:CURR:STAT "},
                                              {"chkOVP", "OVP", ":CONF:PROT:VOLT:STAT "},
                                              {"chkGoNogo", "GoNogo", ":SPEC:PASS "},
                                              {"chkVON", "VON Latch", ":CONF:VOLT:LAT "},
                                              {"chkLoad", "CHAN LOAD OFF", ":LOAD "}});

// The four states of the panel, each reached as an operator or a host does.
void reachNotConnected(PanelBench& /*bench*/) {}
void reachConnected(PanelBench& bench) {
  bench.connectWithoutChannel();
}
void reachAutoQuery(PanelBench& bench) {
  bench.connect();
  // None of its ticks is to fall into the exchanges of a test.
  bench.control<toolkit::Timer>("Timer1").setInterval(toolkit::Timer::kLongestInterval);
  bench.zan().AutoQuery(true);
  bench.stopReceivePoll();
}
void reachLoaded(PanelBench& bench) {
  bench.connect();
}

struct State {
  void (*reach)(PanelBench&);
  int number;
  bool sends;
};
constexpr State kStates[] = {{reachNotConnected, 0, false},
                             {reachConnected, 1, false},
                             {reachAutoQuery, 2, true},
                             {reachLoaded, 3, true}};

TEST(Switches, haveTheirCaptionsAndStartOff) {
  PanelBench bench;
  for (const CheckRow& row : kChecks) {
    EXPECT_EQ(bench.read(row.control, "Caption"), row.caption);
    EXPECT_EQ(bench.box(row.control).value(), 0);
  }
  EXPECT_EQ(bench.read("chkUVP", "Caption"), "UVP");
  EXPECT_EQ(bench.text("cmbCVFreq"), "LOW");
  EXPECT_EQ(bench.text("cmbVolRange"), "LOW");
  EXPECT_EQ(bench.items("cmbCVFreq"), "LOW\nFAST\n");
  EXPECT_EQ(bench.items("cmbVolRange"), "LOW\nHIGH\n");
}

TEST(Switches, sendTheirValueInALoadedPanelOnly) {
  for (const State& state : kStates) {
    PanelBench bench;
    state.reach(bench);
    for (const CheckRow& row : kChecks) {
      SCOPED_TRACE(std::string(row.control) + " in state " + std::to_string(state.number));
      bench.box(row.control).setValue(0);
      (void)bench.journal();
      const auto expected = [&](const char* value) {
        return state.sends ? row.prefix + value + "\n" : std::string();
      };
      bench.click(row.control);
      EXPECT_EQ(bench.sent(), expected("1")) << "ticked by the operator";
      bench.click(row.control);
      EXPECT_EQ(bench.sent(), expected("0")) << "cleared by the operator";
      bench.box(row.control).setValue(1);
      EXPECT_EQ(bench.sent(), expected("1")) << "ticked from code";
      bench.box(row.control).setValue(1);
      EXPECT_EQ(bench.sent(), "") << "not changed";
      bench.box(row.control).setValue(2);
      EXPECT_EQ(bench.sent(), expected("2")) << "greyed from code";
      bench.click(row.control);
      EXPECT_EQ(bench.sent(), expected("0")) << "a greyed box clicked";
    }
  }
}

TEST(Switches, sendOverEveryLink) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench bench;
    bench.connect(link);
    for (const CheckRow& row : kChecks) {
      bench.click(row.control);
      EXPECT_EQ(bench.sent(), row.prefix + "1\n");
    }
  }
}

TEST(Switches, sendNothingWhenTheLinkIsDownAlthoughThePanelIsLoaded) {
  PanelBench bench;
  bench.connect();
  bench.control<toolkit::CommandButton>("cmdSendCmd").setEnabled(false);
  for (const CheckRow& row : kChecks) {
    bench.box(row.control).setValue(1);
  }
  bench.combo("cmbVolRange").setListIndex(1);
  bench.combo("cmbCVFreq").setListIndex(0);
  bench.box("chkUVP").setValue(2);
  EXPECT_EQ(bench.sent(), "");
}

TEST(Switches, followTheAutoQueryIntoTheLoadedState) {
  PanelBench bench;
  bench.connectWithoutChannel();
  EXPECT_FALSE(bench.switchesSend());
  bench.zan().AutoQuery(true);
  EXPECT_TRUE(bench.switchesSend()) << "state 2";
  bench.zan().AutoQuery(false);
  EXPECT_TRUE(bench.switchesSend()) << "state 3";
}

TEST(Switches, restAfterADisconnectAndUntilTheNextChannel) {
  PanelBench bench;
  bench.connect();
  EXPECT_TRUE(bench.switchesSend());
  bench.click("optConnRS232");
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_FALSE(bench.switchesSend());
  bench.instrument.on(":CHAN?", support::silence());
  bench.click("optVISA");
  bench.connectVisa();
  EXPECT_FALSE(bench.switchesSend()) << "connected, no channel selected yet";
  bench.select("cmbChannel", 0);
  EXPECT_TRUE(bench.switchesSend());
}

TEST(OverCurrentProtection, isSentOnceAChannelIsSelected) {
  PanelBench bench;
  bench.connectWithoutChannel();
  bench.click("chkOCP");
  EXPECT_EQ(bench.sent(), "");
  bench.select("cmbChannel", 0);
  (void)bench.journal();
  bench.click("chkOCP");
  EXPECT_EQ(bench.sent(), ":CONF:PROT:CURR:STAT 1\n");
}

TEST(LoadSwitch, showsItsStateInItsCaptionInEveryState) {
  for (const State& state : kStates) {
    PanelBench bench;
    state.reach(bench);
    const auto caption = [&] { return bench.read("chkLoad", "Caption"); };
    EXPECT_EQ(caption(), "CHAN LOAD OFF");
    bench.click("chkLoad");
    EXPECT_EQ(caption(), "CHAN LOAD ON");
    bench.click("chkLoad");
    EXPECT_EQ(caption(), "CHAN LOAD OFF");
    bench.box("chkLoad").setValue(1);
    EXPECT_EQ(caption(), "CHAN LOAD ON");
    bench.box("chkLoad").setValue(2);
    EXPECT_EQ(caption(), "CHAN LOAD OFF") << "greyed";
  }
}

TEST(LoadSwitch, changesItsCaptionBeforeItSends) {
  PanelBench bench;
  bench.connect();
  bench.watch({"chkLoad"});
  bench.click("chkLoad");
  EXPECT_EQ(bench.sent(), "chkLoad.Value 1\nchkLoad.Caption CHAN LOAD ON\n:LOAD 1\n");
}

TEST(UvpSwitch, sendsItsLevelInEveryConnectedState) {
  for (const State& state : kStates) {
    SCOPED_TRACE(state.number);
    PanelBench bench;
    state.reach(bench);
    (void)bench.journal();
    const bool connected = state.number != 0;
    bench.input(26).setText(" 4.5");
    bench.click("chkUVP");
    EXPECT_EQ(bench.sent(), connected ? ":CONF:PROT:UVP:LEV  4.5\n" : "");
    EXPECT_EQ(bench.box("chkUVP").value(), 1);
    bench.click("chkUVP");
    EXPECT_EQ(bench.sent(), connected ? kMinimum : "");
    bench.box("chkUVP").setValue(2);
    EXPECT_EQ(bench.sent(), connected ? kMinimum : "") << "greyed is not ticked";
    bench.box("chkUVP").setValue(1);
    EXPECT_EQ(bench.sent(), connected ? ":CONF:PROT:UVP:LEV  4.5\n" : "") << "from code";
  }
}

TEST(UvpSwitch, showsTheMessagesOfTheSetButtonAndStaysTicked) {
  for (const State& state : kStates) {
    SCOPED_TRACE(state.number);
    const std::pair<const char*, const char*> rows[] = {
        {"", kEmptyBox}, {"  ", kEmptyBox}, {"abc", kNumberBox}, {"1e400", kNumberBox}};
    for (const auto& [level, message] : rows) {
      PanelBench bench;
      state.reach(bench);
      (void)bench.journal();
      bench.input(26).setText(level);
      bench.click("chkUVP");
      EXPECT_EQ(bench.sent(), message);
      EXPECT_EQ(bench.box("chkUVP").value(), 1);
    }
  }
}

TEST(UvpSwitch, withLevelZeroSendsItAndClearsItself) {
  for (const char* level : {"0", "0.0"}) {
    PanelBench bench;
    bench.connectWithoutChannel();
    bench.watch({"chkUVP"});
    bench.input(26).setText(level);
    bench.click("chkUVP");
    EXPECT_EQ(bench.sent(), std::string("chkUVP.Value 1\n:CONF:PROT:UVP:LEV ") + level +
                                "\nchkUVP.Value 0\n" + kMinimum);
  }
}

TEST(UvpSwitch, withLevelZeroStaysTickedWithoutALink) {
  PanelBench bench;
  bench.input(26).setText("0");
  bench.click("chkUVP");
  EXPECT_EQ(bench.sent(), "");
  EXPECT_EQ(bench.box("chkUVP").value(), 1);
}

TEST(UvpSwitch, doesNotReadItsTag) {
  PanelBench bench;
  bench.connect();
  bench.box("chkUVP").setTag("99999");
  bench.input(26).setText("2");
  bench.click("chkUVP");
  bench.click("chkUVP");
  EXPECT_EQ(bench.sent(), std::string(":CONF:PROT:UVP:LEV 2\n") + kMinimum);
}

TEST(RangeSwitch, sendsItsTextInALoadedPanelOnly) {
  for (const State& state : kStates) {
    SCOPED_TRACE(state.number);
    PanelBench bench;
    state.reach(bench);
    bench.combo("cmbVolRange").setListIndex(-1);
    (void)bench.journal();
    const auto expected = [&](const char* text) {
      return state.sends ? std::string(":CONF:VOLT:RANGE ") + text + "\n" : std::string();
    };
    bench.select("cmbVolRange", 1);
    EXPECT_EQ(bench.sent(), expected("HIGH"));
    bench.select("cmbVolRange", 0);
    EXPECT_EQ(bench.sent(), expected("LOW"));
    bench.select("cmbVolRange", 0);
    EXPECT_EQ(bench.sent(), expected("LOW")) << "picked again by the operator";
    bench.combo("cmbVolRange").setListIndex(0);
    EXPECT_EQ(bench.sent(), "") << "not changed";
    bench.combo("cmbVolRange").setListIndex(1);
    EXPECT_EQ(bench.sent(), expected("HIGH")) << "from code";
  }
}

TEST(CvSpeedSwitch, sendsLowInALoadedPanelAndNeverFast) {
  for (const State& state : kStates) {
    SCOPED_TRACE(state.number);
    PanelBench bench;
    state.reach(bench);
    bench.combo("cmbCVFreq").setListIndex(-1);
    (void)bench.journal();
    const std::string low = state.sends ? ":VOLT:MODE LOW\n" : "";
    bench.combo("cmbCVFreq").setListIndex(1);
    EXPECT_EQ(bench.sent(), "");
    bench.combo("cmbCVFreq").setListIndex(0);
    EXPECT_EQ(bench.sent(), low);
  }
}

TEST(CvSpeedSwitch, isForTheOperatorInCv) {
  PanelBench bench;
  bench.connect();
  EXPECT_THROW(bench.select("cmbCVFreq", 0), std::logic_error);
  bench.chooseMode(2);
  bench.select("cmbCVFreq", 1);
  EXPECT_EQ(bench.sent(), "");
  EXPECT_EQ(bench.text("cmbCVFreq"), "FAST");
  bench.select("cmbCVFreq", 0);
  EXPECT_EQ(bench.sent(), ":VOLT:MODE LOW\n");
}

TEST(ComboSwitches, sendExactlyHighOrLow) {
  for (const char* name : {"cmbVolRange", "cmbCVFreq"}) {
    const std::string prefix =
        std::string_view(name) == "cmbVolRange" ? ":CONF:VOLT:RANGE " : ":VOLT:MODE ";
    PanelBench bench;
    bench.connect();
    for (const char* text : {"high", "Low", "LOW ", " HIGH", "FAST", "", "HIGHER", "1"}) {
      bench.combo(name).setText(text);
      bench.combo(name).click.raise();
      EXPECT_EQ(bench.sent(), "") << name << " \"" << text << '"';
    }
    for (const char* text : {"HIGH", "LOW"}) {
      bench.combo(name).setText(text);
      EXPECT_EQ(bench.sent(), "") << "typing alone switches nothing";
      bench.combo(name).click.raise();
      EXPECT_EQ(bench.sent(), prefix + text + "\n");
    }
  }
}

TEST(SwitchesInTurn, whoseCommandsDoNotGoOutGoBack) {
  for (const CheckRow& row : kChecks) {
    PanelBench bench({.exchanges = Exchanges::InTurn});
    bench.connect();
    bench.script.fail("viWrite", io::VI_ERROR_IO);
    bench.click(row.control);
    EXPECT_EQ(bench.read(row.control, "Value"), "0") << row.control;
    EXPECT_EQ(bench.read(row.control, "Caption"), row.caption);
    bench.script.heal("viWrite");
    bench.journal();
    bench.click(row.control);
    EXPECT_EQ(bench.read(row.control, "Value"), "1") << row.control;
    EXPECT_EQ(bench.sent(), row.prefix + "1\n");
  }
}

TEST(SwitchesInTurn, thatAreListsGoBackToo) {
  PanelBench bench({.exchanges = Exchanges::InTurn});
  bench.connect();
  bench.select("cmbVolRange", 1);
  bench.script.fail("viWrite", io::VI_ERROR_IO);
  bench.select("cmbVolRange", 0);
  EXPECT_EQ(bench.text("cmbVolRange"), "HIGH");
}

TEST(UvpSwitchInTurn, whoseLevelDoesNotGoOutGoesBack) {
  PanelBench bench({.exchanges = Exchanges::InTurn});
  bench.connect();
  bench.input(26).setText("2");
  bench.script.fail("viWrite", io::VI_ERROR_IO);
  bench.click("chkUVP");
  EXPECT_EQ(bench.box("chkUVP").value(), 0) << "it was not switched on";
  bench.set(26, "3");
  EXPECT_EQ(bench.box("chkUVP").value(), 0) << "a level that was not sent marks nothing";
  bench.script.heal("viWrite");
  bench.journal();
  bench.click("chkUVP");
  EXPECT_EQ(bench.sent(), ":CONF:PROT:UVP:LEV 3\n");
  EXPECT_EQ(bench.box("chkUVP").value(), 1);
  bench.script.fail("viWrite", io::VI_ERROR_IO);
  bench.click("chkUVP");
  EXPECT_EQ(bench.box("chkUVP").value(), 1) << "it was not switched off";
  bench.script.heal("viWrite");
  bench.journal();
  bench.click("chkUVP");
  EXPECT_EQ(bench.sent(), kMinimum);
}

TEST(UvpSwitchInTurn, staysTickedBehindABoxWithoutALevel) {
  PanelBench bench({.exchanges = Exchanges::InTurn});
  bench.connect();
  bench.input(26).setText("");
  bench.click("chkUVP");
  EXPECT_EQ(bench.box("chkUVP").value(), 1);
}

}  // namespace
}  // namespace lumodevice::panel
