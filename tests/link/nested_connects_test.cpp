#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <tuple>

#include "tests/support/panel_bench.hpp"

namespace lumodevice {
namespace {

using support::Over;
using support::PanelBench;

/// A serial search in one of whose event passes something else is done; an instrument is on COM3,
/// and one behind VISA.
class ActInsideASearch : public testing::TestWithParam<std::tuple<Exchanges, int>> {
 protected:
  ActInsideASearch() {
    bench.serial.ports[3].instrument = &bench.instrument;
    bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
    bench.instrument.on(":A?", "one\n");
    bench.click("optConnRS232");
  }

  /// Searches, with `act` in the event pass of the test's parameter; false when there are not so
  /// many.
  [[nodiscard]] bool search(const std::function<void()>& act) {
    int left = std::get<int>(GetParam());
    const auto watching = bench.loop.observePasses([&] {
      if (left-- == 0) {
        act();
      }
    });
    bench.click("cmdAuto");
    return left < 0;
  }

  /// Whoever won, the link works, and is what the panel says that it is.
  void expectLink(LinkKind kind) {
    EXPECT_TRUE(bench.zan().isConnected());
    EXPECT_EQ(bench.zan().ConnStyle(), kind);
    bench.journal();
    EXPECT_EQ(bench.ask(":A?"), "one");
    const std::string written = bench.journal({kind == LinkKind::Visa ? "viWrite" : "COM3 write"});
    EXPECT_NE(written.find(":A?"), std::string::npos) << written;
  }

  PanelBench bench{support::Bench::Setup{.exchanges = std::get<Exchanges>(GetParam())}};
};

INSTANTIATE_TEST_SUITE_P(Passes, ActInsideASearch,
                         testing::Combine(testing::Values(Exchanges::Interleaved,
                                                          Exchanges::InTurn),
                                          testing::Range(0, 24)));

TEST_P(ActInsideASearch, aVisaConnectWinsWhole) {
  const bool inside = search([this] {
    bench.click("optVISA");
    bench.click("cmdAutoConnVISA");
  });
  expectLink(inside ? LinkKind::Visa : LinkKind::Serial);
}

TEST_P(ActInsideASearch, aSecondSearchWinsWhole) {
  (void)search([this] { bench.click("cmdAuto"); });
  expectLink(LinkKind::Serial);
}

TEST_P(ActInsideASearch, aManualConnectWinsWhole) {
  (void)search([this] {
    bench.type("Text1", "3");
    bench.select("Combo2", 0);
    bench.click("Command2");
  });
  if (std::get<Exchanges>(GetParam()) == Exchanges::Interleaved && !bench.zan().isConnected()) {
    // Begun inside a tick of the receive poll, which alone delivers answers then.
    bench.click("Command2");
  }
  expectLink(LinkKind::Serial);
}

TEST_P(ActInsideASearch, theAutoQueryTalksToNoDeviceThatIsTried) {
  bench.zan().AutoQuery(true);
  bench.journal();
  (void)search([this] { bench.run(std::chrono::milliseconds(1000)); });
  const std::string written = bench.journal({"COM3 write"});
  EXPECT_GT(written.find(":FETC"), written.rfind("*IDN?"))
      << "not before there is a link: " << written;
}

TEST(SerialSearchFlag, doesNotOutliveAChangeToVisa) {
  PanelBench bench;
  bench.connect(Over::Serial);
  bench.click("cmdAuto");
  bench.click("optVISA");
  bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
  bench.click("cmdAutoConnVISA");
  bench.journal();
  bench.control<toolkit::Form>("ZANCtrl").show.raise();
  EXPECT_EQ(bench.sent(), "");
}

TEST(ReadOuts, goOnAfterASerialLinkWasLeftInTheMiddleOfAQuery) {
  PanelBench bench;
  bench.connect(Over::Serial);
  bench.zan().AutoQuery(true);
  bench.run(std::chrono::milliseconds(210));
  bench.click("optVISA");
  bench.run(std::chrono::milliseconds(1000));
  bench.zan().AutoQuery(false);
  bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
  EXPECT_TRUE(bench.zan().AutoConnect());
  bench.instrument.on(":FETC:VOLT?", "12.5\n");
  bench.zan().AutoQuery(true);
  bench.run(std::chrono::milliseconds(3000));
  EXPECT_EQ(bench.text("txtVoltage(0)"), "12.5");
}

TEST(ReadOuts, goOnAfterAQueryThatCouldNotBeWritten) {
  PanelBench bench;
  bench.connect(Over::Serial);
  bench.script.fail("COM3 write", io::kSerialDeviceBusy, 1);
  bench.ask(":FETC:VOLT?");
  bench.instrument.on(":FETC:VOLT?", "12.5\n");
  bench.zan().AutoQuery(true);
  bench.run(std::chrono::milliseconds(3000));
  EXPECT_EQ(bench.text("txtVoltage(0)"), "12.5");
}

TEST(FinalIdentity, thatDoesNotComeInTurnLeavesNoSessionAndNoLink) {
  PanelBench bench{support::Bench::Setup{.exchanges = Exchanges::InTurn}};
  bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
  EXPECT_TRUE(bench.zan().AutoConnect());
  bench.script.fail("viOpen 5", io::VI_ERROR_RSRC_LOCKED, 1);
  (void)bench.zan().AutoConnect();
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_EQ(bench.visa.openHandles(), "");
  EXPECT_TRUE(bench.zan().AutoConnect()) << "the next connect works";
}

}  // namespace
}  // namespace lumodevice
