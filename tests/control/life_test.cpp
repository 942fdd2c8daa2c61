#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "lumodevice/toolkit/controls.hpp"
#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::Bench;
using support::lines;

TEST(Destruction, throughTheVisaLibraryClosesSessionFindListAndResourceManager) {
  Bench bench;
  bench.connectVisa();
  bench.destroy();
  EXPECT_EQ(bench.journal(), lines({"viClose 4", "viClose 2", "viClose 1"}));
  EXPECT_EQ(bench.visa.openHandles(), "");
}

TEST(Destruction, ignoresFailedCloses) {
  Bench bench;
  bench.connectVisa();
  bench.script.fail("viClose", io::VI_ERROR_SYSTEM_ERROR);
  bench.destroy();
  EXPECT_EQ(bench.journal(), lines({"viClose 4", "viClose 2", "viClose 1"}));
}

/// Throws what no status says, once it has noted the call.
class BrokenVisa : public support::ScriptedVisa {
 public:
  using ScriptedVisa::ScriptedVisa;
  bool broken = false;
  io::ViStatus viClose(io::ViObject object) override {
    const io::ViStatus status = ScriptedVisa::viClose(object);
    if (broken) {
      throw std::runtime_error("the library's own failure");
    }
    return status;
  }
};

TEST(Destruction, endsWhateverVisaThrowsAndTellsOfIt) {
  Bench bench;
  BrokenVisa visa(bench.script, bench.loop);
  visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
  const Host host = bench.host();
  std::optional<ZANCtrl> zan(std::in_place, Host{.loop = host.loop,
                                                 .visa = visa,
                                                 .visaCom = host.visaCom,
                                                 .serialDevices = host.serialDevices,
                                                 .drive = host.drive,
                                                 .wallClock = host.wallClock,
                                                 .informationBox = host.informationBox});
  ASSERT_TRUE(zan->AutoConnect());
  (void)bench.journal();
  visa.broken = true;
  testing::internal::CaptureStderr();
  zan.reset();
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_NE(told.find("the library's own failure"), std::string::npos) << told;
  EXPECT_EQ(bench.journal(), lines({"viClose 4", "viClose 2", "viClose 1"}));
  EXPECT_EQ(visa.openHandles(), "");
}

TEST(Destruction, throughVisaComClosesNoLibraryHandleAndLetsTheSessionGo) {
  Bench bench;
  bench.connectVisaCom();
  bench.destroy();
  EXPECT_EQ(bench.journal(), lines({"released GPIB0::7::INSTR"}));
}

TEST(Destruction, onTheSerialLinkClosesHandlesThatWereNeverOpenedAndThenThePort) {
  Bench bench;
  bench.connectSerial();
  bench.destroy();
  EXPECT_EQ(bench.journal(), lines({"viClose 0", "viClose 0", "viClose 0", "COM3 close"}));
}

TEST(Destruction, onTheSerialLinkWithVisaComChosenClosesThePortAlone) {
  Bench bench;
  bench.click("optVisa2");
  bench.connectSerial();
  bench.destroy();
  EXPECT_EQ(bench.journal(), lines({"COM3 close"}));
}

TEST(Destruction, withoutALinkClosesNothing) {
  Bench bench;
  bench.destroy();
  EXPECT_EQ(bench.journal(), "");
}

TEST(Destruction, ofAComponentWhoseConnectFoundNothingClosesNothing) {
  Bench bench;
  bench.click("cmdAutoConnVISA");
  bench.journal();
  bench.destroy();
  EXPECT_EQ(bench.journal(), "");
}

TEST(Destruction, leavesTheHostsLoopUsable) {
  Bench bench;
  bench.connectSerial();
  bench.type("Text2", ":Q?");
  bench.click("cmdSendCmd");
  bench.destroy();
  bench.journal();
  bench.run(std::chrono::milliseconds(100));
  EXPECT_EQ(bench.journal(), lines({"pass", "pass"}));
}

/// Two components on the loop of one host.
class SideBySide : public testing::Test {
 protected:
  toolkit::VirtualLoop loop;
  Bench left{{.loop = &loop}};
  Bench right{{.loop = &loop}};
};

TEST_F(SideBySide, eachTalksToItsOwnInstrument) {
  left.connectSerial();
  right.connectSerial();
  left.instrument.on(":Q?", "left\n");
  right.instrument.on(":Q?", "right\n");
  EXPECT_EQ(left.ask(":Q?"), "left");
  EXPECT_EQ(right.ask(":Q?"), "right");
  EXPECT_EQ(left.zan().ResultStr(), "left");
}

TEST_F(SideBySide, eachHasItsOwnKindOfLink) {
  left.connectVisa();
  right.connectSerial();
  EXPECT_EQ(left.zan().ConnStyle(), LinkKind::Visa);
  EXPECT_EQ(right.zan().ConnStyle(), LinkKind::Serial);
  right.click("optVISA");
  EXPECT_TRUE(left.zan().isConnected());
  EXPECT_FALSE(right.zan().isConnected());
}

TEST_F(SideBySide, theAnswerToOneArrivesWhileTheOtherWaits) {
  left.connectSerial();
  right.connectSerial();
  left.instrument.on(":SLOW?", support::answer("slow\n", std::chrono::milliseconds(100)));
  left.type("Text2", ":SLOW?");
  left.click("cmdSendCmd");
  EXPECT_EQ(right.ask(":CHAN?"), "2");
  right.zan().SendCmd(":LOAD 0");
  EXPECT_EQ(left.zan().ResultStr(), "slow");
}

TEST_F(SideBySide, oneGoesOnWhenTheOtherIsGone) {
  left.connectSerial();
  right.connectVisa();
  left.destroy();
  EXPECT_EQ(right.ask(":CHAN?"), "2");
}

/// A component whose form is yet to come into view.
class Show : public testing::Test {
 protected:
  void show() { bench.control<toolkit::Form>("ZANCtrl").show.raise(); }

  /// Searches the serial ports and leaves the link.
  void search() {
    bench.serial.ports[3].instrument = &bench.instrument;
    bench.click("optConnRS232");
    bench.click("cmdAuto");
    bench.journal();
  }

  Bench bench;
};

TEST_F(Show, withoutASearchBeforeDoesNothing) {
  bench.click("optMode(4)");
  bench.journal();
  show();
  EXPECT_EQ(bench.read("optMode(4)", "Value"), "True");
  EXPECT_EQ(bench.journal(), "");
}

TEST_F(Show, afterASearchThatFoundAnInstrumentSelectsTheFirstMode) {
  search();
  ASSERT_TRUE(bench.zan().isConnected());
  bench.click("optMode(4)");
  bench.journal();
  show();
  EXPECT_EQ(bench.read("optMode(0)", "Value"), "True");
  EXPECT_NE(bench.journal({"COM3 write :MODE CCH"}), "");
}

TEST_F(Show, selectsTheFirstModeAlsoWhereItIsSelected) {
  search();
  bench.click("optMode(0)");
  bench.journal();
  show();
  EXPECT_NE(bench.journal({"COM3 write :MODE CCH"}), "");
}

TEST_F(Show, afterASearchThatFoundNothingDoesNothing) {
  bench.instrument.on("*IDN?", support::silence());
  search();
  bench.click("optMode(4)");
  bench.journal();
  show();
  EXPECT_EQ(bench.read("optMode(4)", "Value"), "True");
}

}  // namespace
}  // namespace lumodevice
