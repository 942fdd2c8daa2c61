#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::kLinks;
using support::linkName;
using support::Over;
using support::PanelBench;

/// What selecting a channel in mode "CCH" asks, behind the channel command.
constexpr const char* kReadBack =
    ":Mode?\n"
    ":MODE CCH\n"
    ":CURR:STAT:L1?\n:CURR:STAT:L2?\n:CURR:STAT:RISE?\n:CURR:STAT:FALL?\n"
    ":CONF:VOLT:RANGE?\n"
    ":CONF:VOLT:LAT?\n"
    ":CONF:VOLT:ON?\n"
    ":LOAD?\n"
    ":CONF:PROT:CURR:STAT?\n:CONF:PROT:VOLT:STAT?\n:CONF:PROT:UVP:LEV?\n"
    ":SPEC:PASS?\n"
    ":CONF:PROT:CURR:LEV?\n:CONF:PROT:VOLT:LEV?\n:CONF:PROT:UVP:LEV?\n"
    ":SPEC:VOLT:H?\n:SPEC:VOLT:L?\n"
    ":FETC:VOLT?\n:FETC:CURR?\n:FETC:POW?\n";

TEST(ChannelSelection, readsTheWholePanelBackOverEveryLink) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench bench;
    bench.connect(link);
    bench.select("cmbChannel", 0);
    EXPECT_EQ(bench.sent(), std::string(":CHAN 1\n") + kReadBack);
    bench.combo("cmbChannel").setListIndex(1);
    EXPECT_EQ(bench.sent(), std::string(":CHAN 2\n") + kReadBack) << "from code";
    bench.select("cmbChannel", 1);
    EXPECT_EQ(bench.sent(), std::string(":CHAN 2\n") + kReadBack) << "picked again";
  }
}

TEST(ChannelSelection, isPartOfAConnect) {
  PanelBench bench;
  bench.instrument.on(":CHAN?", "1\n");
  bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
  bench.stopReceivePoll();
  bench.click("cmdAutoConnVISA");
  const std::string sent = bench.journal({"viWrite 4 "});
  EXPECT_NE(sent.find("viWrite 4 :CHAN?\\n\nviWrite 4 :CHAN 1\\n\nviWrite 4 :Mode?\\n\n"),
            std::string::npos)
      << sent;
  EXPECT_TRUE(bench.switchesSend());
}

TEST(ChannelSelection, showsTheReadingsAsTheyCame) {
  PanelBench bench;
  EXPECT_EQ(bench.text("txtVoltage(0)"), "0.0");
  EXPECT_EQ(bench.text("txtCurrent(0)"), "0.0");
  EXPECT_EQ(bench.text("txtPower(0)"), "0.0");
  bench.connect();
  bench.instrument.on(":FETC:VOLT?", "12.3450 \n");
  bench.instrument.on(":FETC:CURR?", " 1\n");
  bench.instrument.on(":FETC:POW?", "off\n");
  bench.select("cmbChannel", 0);
  EXPECT_EQ(bench.text("txtVoltage(0)"), "12.3450 ");
  EXPECT_EQ(bench.text("txtCurrent(0)"), " 1");
  EXPECT_EQ(bench.text("txtPower(0)"), "off");
}

TEST(ChannelSelection, sendsTheThirdCharacterAlone) {
  const std::pair<const char*, const char*> rows[] = {
      {"CH1", ":CHAN 1\n"},  {"CH9-X", ":CHAN 9\n"}, {"CH12-X", ":CHAN 1\n"},
      {"CH1L", ":CHAN 1\n"}, {"CH3G1", ":CHAN 3\n"}, {"ABC", ":CHAN C\n"}};
  for (const auto& [channel, command] : rows) {
    PanelBench bench;
    bench.connect();
    bench.selectChannel(channel);
    EXPECT_TRUE(bench.sent().starts_with(std::string(command) + ":Mode?\n")) << channel;
  }
}

TEST(ChannelSelection, ofAShortTextSendsTheBarePrefix) {
  for (const char* channel : {"CH", "C", "7"}) {
    PanelBench bench;
    bench.connect();
    bench.selectChannel(channel);
    EXPECT_EQ(bench.text("Text2"), ":FETC:POW?");
    // The exchange trims the line, and with it the blank of the prefix.
    EXPECT_TRUE(bench.sent().starts_with(":CHAN\n:Mode?\n")) << channel;
  }
}

TEST(ChannelSelection, ofAnEmptyTextDoesNothing) {
  PanelBench bench;
  bench.connect();
  bench.zan().AutoQuery(true);
  bench.stopReceivePoll();
  bench.combo("cmbChannel").setText("");
  bench.combo("cmbChannel").click.raise();
  EXPECT_EQ(bench.sent(), "");
  EXPECT_TRUE(bench.zan().AutoQuery());
  bench.combo("cmbChannel").setListIndex(-1);
  EXPECT_EQ(bench.sent(), "");
}

TEST(ChannelSelection, sendsTheEntryThatWasPickedNotWhatWasTypedBefore) {
  PanelBench bench;
  bench.connect();
  for (const bool byClick : {true, false}) {
    bench.type("cmbChannel", "chz");
    if (byClick) {
      bench.click("cmbChannel");
    } else {
      bench.select("cmbChannel", bench.combo("cmbChannel").listIndex());
    }
    EXPECT_EQ(bench.text("cmbChannel"), "CH2-ZAN6310");
    EXPECT_EQ(bench.sent(), std::string(":CHAN 2\n") + kReadBack);
  }
}

TEST(ChannelSelection, putsTheAutoQueryOffFirst) {
  PanelBench bench;
  bench.connect();
  bench.zan().AutoQuery(true);
  bench.stopReceivePoll();
  bench.watch({"chkAutoQuery", "Timer1"});
  bench.select("cmbChannel", 0);
  EXPECT_EQ(bench.sent(), std::string("chkAutoQuery.Value 0\n"
                                      "Timer1.Enabled False\n"
                                      ":CHAN 1\n") +
                              kReadBack);
  EXPECT_TRUE(bench.switchesSend()) << "state 3";
}

TEST(ChannelSelection, putsTheAutoQueryOffWithoutALinkToo) {
  PanelBench bench;
  bench.zan().AutoQuery(true);
  bench.selectChannel("CH1");
  EXPECT_FALSE(bench.zan().AutoQuery());
  EXPECT_EQ(bench.sent(), "");
  EXPECT_EQ(bench.text("TXT"), "");
}

TEST(ChannelSelection, leavesAGreyedAutoQueryAlone) {
  PanelBench bench;
  bench.connect();
  bench.box("chkAutoQuery").setValue(2);
  bench.select("cmbChannel", 0);
  EXPECT_EQ(bench.box("chkAutoQuery").value(), 2);
  EXPECT_TRUE(bench.switchesSend()) << "state 3";
}

TEST(ChannelSelection, letsAClickRunBetweenTwoOfItsQueries) {
  PanelBench bench;
  bench.connect();
  bench.actAfter(":CURR:STAT:FALL?", [&] { bench.click("chkOCP"); });
  bench.select("cmbChannel", 0);
  const std::string sent = bench.sent();
  EXPECT_NE(sent.find(":CURR:STAT:RISE?\n:CONF:PROT:CURR:STAT 1\n"), std::string::npos) << sent;
  EXPECT_TRUE(sent.ends_with(":FETC:VOLT?\n:FETC:CURR?\n:FETC:POW?\n"));
}

TEST(ChannelSelection, endsInStateTwoWhenTheAutoQueryIsTickedMeanwhile) {
  PanelBench bench;
  bench.connectWithoutChannel();
  bench.type("Text5", "60000");
  bench.press("Text5", toolkit::Key::Enter);
  bench.type("Text5", "1");
  bench.actAfter(":SPEC:PASS?", [&] { bench.click("chkAutoQuery"); });
  bench.select("cmbChannel", 0);
  EXPECT_TRUE(bench.zan().AutoQuery());
  EXPECT_TRUE(bench.switchesSend());
}

/// What the panel shows of the settings: the texts of the boxes, the switches and the range.
std::string shownSettings(PanelBench& bench) {
  std::string shown;
  for (int i = 0; i < 29; ++i) {
    shown += bench.input(i).text() + '|';
  }
  for (const char* name : {"chkVON", "chkLoad", "chkOCP", "chkOVP", "chkUVP", "chkGoNogo"}) {
    shown += std::to_string(bench.box(name).value()) + '|';
  }
  return shown + bench.read("cmbVolRange", "Text") + '|' + bench.read("lblVoRange", "Caption");
}

TEST(ChannelSelection, asksAndShowsNoMoreOnceTheLinkHasGone) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench bench;
    bench.connect(link);
    for (int i = 0; i < 29; ++i) {
      bench.input(i).setText(std::to_string(i));
    }
    for (const char* name : {"chkVON", "chkLoad", "chkOCP", "chkOVP", "chkUVP", "chkGoNogo"}) {
      bench.box(name).setValue(1);
    }
    bench.combo("cmbVolRange").setListIndex(1);
    bench.control<toolkit::Label>("lblVoRange").setCaption("80");
    (void)bench.journal();
    std::string before;
    bench.actAfter(":CURR:STAT:L2?", [&] {
      before = shownSettings(bench);
      bench.click(link == Over::Serial ? "optVISA" : "optConnRS232");
    });
    bench.select("cmbChannel", 0);
    const std::string sent = bench.journal({"viWrite", "WriteString", "COM3 write"});
    EXPECT_EQ(sent.find(":CURR:STAT:RISE?"), std::string::npos) << sent;
    EXPECT_TRUE(before.starts_with("0.5|1|2|3|")) << before;
    EXPECT_EQ(shownSettings(bench), before);
    EXPECT_FALSE(bench.zan().isConnected());
    EXPECT_FALSE(bench.switchesSend());
  }
}

TEST(ChannelSelection, isNotLoadedAfterALinkThatWentDuringIt) {
  PanelBench bench;
  bench.connect();
  bench.actAfter(":CURR:STAT:L2?", [&] { bench.click("optConnRS232"); });
  bench.select("cmbChannel", 0);
  // A connect would set the state of the panel anew; the flag alone shows what it was left at.
  bench.control<toolkit::CommandButton>("cmdSendCmd").setEnabled(true);
  EXPECT_FALSE(bench.switchesSend());
}

TEST(ChannelSelection, waitsOneUnitForEveryCommand) {
  PanelBench bench;
  bench.connect();
  const auto before = bench.loop.now();
  bench.select("cmbChannel", 0);
  const std::string sleeps = bench.journal({"sleep"});
  std::string expected;
  for (int i = 0; i < 23; ++i) {
    expected += "sleep 200\n";
  }
  EXPECT_EQ(sleeps, expected);
  EXPECT_EQ(bench.loop.now() - before, std::chrono::milliseconds(23 * 200));
}

TEST(ChannelSelectionInTurn, whoseCommandDoesNotGoOutLeavesNoChannelToSwitch) {
  PanelBench bench({.exchanges = Exchanges::InTurn});
  bench.connect();
  bench.script.fail("viWrite", io::VI_ERROR_CONN_LOST);
  bench.select("cmbChannel", 0);
  EXPECT_EQ(bench.text("cmbChannel"), "");
  bench.script.heal("viWrite");
  EXPECT_FALSE(bench.switchesSend());
}

TEST(ChannelSelectionInTurn, claimsAndSendsNothingOfWhatHasNoAnswer) {
  PanelBench bench({.exchanges = Exchanges::InTurn});
  bench.connect();
  bench.control<toolkit::CheckBox>("chkLoad").setValue(toolkit::CheckBox::kTicked);
  for (const char* query : {":LOAD?", ":Mode?", ":CONF:VOLT:RANGE?"}) {
    bench.instrument.on(query, support::silence());
  }
  bench.journal();
  bench.select("cmbChannel", 0);
  EXPECT_EQ(bench.journal({"viWrite 4 :LOAD ", "viWrite 4 :MODE ", "viWrite 4 :CONF:VOLT:RANGE "}),
            "");
  EXPECT_EQ(bench.read("chkLoad", "Value"), "2");
  EXPECT_EQ(bench.read("optMode(0)", "Value"), "False");
  EXPECT_EQ(bench.read("cmbVolRange", "ListIndex"), "-1");
  EXPECT_TRUE(bench.switchesSend());
}

}  // namespace
}  // namespace lumodevice::panel
