#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::Bench;
using support::lines;

TEST(SwitchingLinks, fromTheVisaLibraryToSerialClosesSessionFindListAndResourceManager) {
  Bench bench;
  bench.connectVisa();
  bench.click("optConnRS232");
  EXPECT_EQ(bench.journal({"viClose"}), lines({"viClose 4", "viClose 2", "viClose 1"}));
  EXPECT_EQ(bench.visa.openHandles(), "");
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_EQ(bench.zan().ConnStyle(), LinkKind::NotConnected);
}

TEST(SwitchingLinks, aFailedCloseDoesNotKeepTheVisaLinkUp) {
  Bench bench;
  bench.connectVisa();
  bench.script.fail("viClose", io::VI_ERROR_SYSTEM_ERROR);
  bench.click("optConnRS232");
  EXPECT_EQ(bench.journal({"viClose"}), lines({"viClose 4", "viClose 2", "viClose 1"}));
  EXPECT_FALSE(bench.zan().isConnected());
}

TEST(SwitchingLinks, fromVisaComToSerialFindsNoLibraryHandleLeftToClose) {
  Bench bench;
  bench.connectVisaCom();
  bench.click("optConnRS232");
  EXPECT_EQ(bench.journal({"viClose"}), lines({"viClose 0", "viClose 0", "viClose 0"}));
  EXPECT_FALSE(bench.zan().isConnected());
}

TEST(SwitchingLinks, withoutALinkThereIsNothingToClose) {
  Bench bench;
  bench.click("optConnRS232");
  EXPECT_EQ(bench.journal({"viClose"}), "");
}

TEST(SwitchingLinks, fromSerialToVisaClosesThePortAndEndsTheLink) {
  Bench bench;
  bench.connectSerial();
  bench.click("optVISA");
  EXPECT_EQ(bench.journal(), lines({"COM3 close"}));
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "False");
  EXPECT_EQ(bench.text("txtVoltage(0)"), "");
}

TEST(SwitchingLinks, fromAClosedPortToVisaTheLookOfThePanelStays) {
  Bench bench;
  bench.click("optConnRS232");
  bench.click("optVISA");
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "True");
}

TEST(SwitchingLinks, onlyTheButtonsOfTheChosenLinkCanBePressed) {
  Bench bench;
  bench.click("optConnRS232");
  EXPECT_EQ(bench.read("cmdAuto", "Enabled"), "True");
  EXPECT_EQ(bench.read("Command2", "Enabled"), "True");
  EXPECT_EQ(bench.read("cmdAutoConnVISA", "Enabled"), "False");
  EXPECT_EQ(bench.read("cmdConnVISA", "Enabled"), "False");
  bench.click("optVISA");
  EXPECT_EQ(bench.read("cmdAuto", "Enabled"), "False");
  EXPECT_EQ(bench.read("Command2", "Enabled"), "False");
  EXPECT_EQ(bench.read("cmdAutoConnVISA", "Enabled"), "True");
  EXPECT_EQ(bench.read("cmdConnVISA", "Enabled"), "True");
}

TEST(SwitchingLinks, selectingVisaPutsTheReceivePollToRest) {
  Bench bench;
  bench.click("optConnRS232");
  bench.click("optVISA");
  EXPECT_EQ(bench.read("Timer2", "Enabled"), "False");
}

TEST(SwitchingLinks, thereAndBackEachLinkWorksAgain) {
  Bench bench;
  for (int round = 0; round < 2; ++round) {
    bench.connectSerial();
    EXPECT_EQ(bench.ask(":CHAN?"), "2");
    EXPECT_EQ(bench.zan().ConnStyle(), LinkKind::Serial);
    bench.click("optVISA");
    bench.click("optVisa1");
    bench.connectVisa();
    EXPECT_EQ(bench.ask(":CHAN?"), "2");
    EXPECT_EQ(bench.zan().ConnStyle(), LinkKind::Visa);
    bench.connectVisaCom();
    EXPECT_EQ(bench.ask(":CHAN?"), "2");
  }
}

TEST(SwitchingLinks, aHandleThatWasClosedIsNeverClosedAgain) {
  Bench bench;
  bench.connectVisa();
  bench.click("optConnRS232");
  bench.connectSerial();
  bench.journal();
  bench.click("optVISA");
  bench.click("optConnRS232");
  EXPECT_EQ(bench.journal({"viClose"}), "");
  bench.connectSerial();
  bench.destroy();
  EXPECT_EQ(bench.journal({"viClose"}), lines({"viClose 0", "viClose 0", "viClose 0"}));
}

}  // namespace
}  // namespace lumodevice
