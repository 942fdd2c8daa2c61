#include <gmock/gmock.h>

#include "tests/end_to_end/serial_bench.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::end_to_end {
namespace {

using std::chrono::milliseconds;
using support::lines;

constexpr const char* kIdentity = "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3";
constexpr const char* kChannels =
    "CH1-2021L\nCH2-2021R\nCH3-2040\nCH4-2040\nCH5-2041\nCH6-2050\nCH7-2030\n";

TEST(SerialConnection, choosingTheLinkListsThePortsThatCanBeOpened) {
  SerialBench bench({2, 3, 9, 16});
  EXPECT_EQ(bench.panel().items("Combo1"), lines({"COM2", "COM3", "COM9", "COM16"}));
  EXPECT_EQ(bench.panel().state(), "not connected");
}

TEST(SerialConnection, aSearchScansAnewAndPassesOverAPortThatIsGone) {
  SerialBench bench({2, 3, 9});
  bench.load(9).unplug();
  bench.panel().type("Text5", "20");
  bench.panel().click("cmdAuto");
  EXPECT_EQ(bench.panel().items("Combo1"), lines({"COM2", "COM3"}));
  EXPECT_EQ(bench.panel().text("Combo1"), "COM3") << "the highest port comes first";
  EXPECT_EQ(bench.panel().state(), "serial, 7 channels");
}

TEST(SerialConnection, everyPortIsTriedAtEachSpeedBeforeTheNextSpeed) {
  SerialBench bench({3, 5});
  bench.load(3).plug(9600);
  bench.load(5).plug(4800);
  bench.panel().type("Text5", "20");
  bench.opened();
  EXPECT_TRUE(bench.panel().zan().AutoConnect());
  EXPECT_EQ(bench.opened(), lines({"COM3 9600", "COM5 9600",  // the scan
                                   "COM5 38400", "COM3 38400", "COM5 19200", "COM3 19200",
                                   "COM5 9600", "COM3 9600"}));
  EXPECT_EQ(bench.panel().text("Combo1"), "COM3");
  EXPECT_EQ(bench.panel().text("Combo2"), "9600");
  EXPECT_EQ(bench.panel().items("cmbChannel"), kChannels);
  EXPECT_EQ(bench.panel().zan().IDN(), "") << "the search does not keep the identity";
}

TEST(SerialConnection, byHandTheIdentityIsKept) {
  SerialBench bench({3, 4});
  bench.connectByHand(4);
  EXPECT_EQ(bench.panel().state(), "serial, 7 channels");
  EXPECT_EQ(bench.panel().zan().IDN(), kIdentity);
  EXPECT_EQ(bench.panel().items("cmbChannel"), kChannels);
  EXPECT_EQ(bench.panel().read("cmbChannel", "ListIndex"), "0");
  EXPECT_THAT(bench.load(3).heard, testing::IsEmpty());
}

TEST(SerialConnection, aPortThatDoesNotExistLeavesEverythingAsItWas) {
  SerialBench bench({4});
  bench.connectByHand(4);
  bench.panel().type("Text1", "11");
  bench.panel().click("Command2");
  EXPECT_EQ(bench.panel().state(), "serial, 7 channels");
}

TEST(SerialConnection, anotherInstrumentIsNotOurs) {
  SerialBench bench({4});
  bench.load(4).instrument.faults.add("identity=Somebody,Else,1,2.3.4");
  EXPECT_FALSE(bench.panel().zan().AutoConnect());
  EXPECT_EQ(bench.panel().state(), "not connected");
  EXPECT_EQ(bench.panel().boxes(), "");
  bench.panel().select("Combo2", 0);
  bench.panel().type("Text1", "4");
  bench.panel().click("Command2");
  EXPECT_EQ(bench.panel().state(), "not connected");
}

TEST(SerialConnection, aGarbledIdentityIsNotOurs) {
  SerialBench bench({4});
  bench.load(4).instrument.faults.add("garble");
  EXPECT_FALSE(bench.panel().zan().AutoConnect());
  EXPECT_EQ(bench.panel().state(), "not connected");
  bench.load(4).instrument.faults.clear();
  bench.panel().type("Text5", "20");
  EXPECT_TRUE(bench.panel().zan().AutoConnect());
}

TEST(SerialConnection, anIdentityThatNeverEndsIsNone) {
  SerialBench bench({4});
  bench.load(4).instrument.faults.add("unterminated");
  EXPECT_FALSE(bench.panel().zan().AutoConnect());
  EXPECT_EQ(bench.panel().state(), "not connected");
}

TEST(SerialConnection, choosingTheVisaLinkFreesThePort) {
  SerialBench bench({4});
  bench.connectByHand(4);
  bench.panel().click("optVISA");
  EXPECT_EQ(bench.panel().state(), "not connected");
  bench.opened();
  bench.panel().click("optConnRS232");
  bench.connectByHand(4);
  EXPECT_EQ(bench.opened(), lines({"COM4 38400"})) << "the list of ports is still there";
}

TEST(SerialConnection, aCableThatIsPulledAndPutBackConnectsAnew) {
  SerialBench bench({4});
  bench.connectByHand(4);
  bench.panel().boxes();
  bench.load(4).unplug();
  EXPECT_EQ(bench.panel().ask(":CHAN?"), "");
  EXPECT_EQ(bench.panel().boxes(), lines({kUnanswered}));
  bench.panel().zan().AutoQuery(true);
  bench.run(milliseconds(5000));
  bench.panel().zan().AutoQuery(false);
  EXPECT_FALSE(bench.panel().zan().AutoConnect());
  EXPECT_EQ(bench.panel().state(), "not connected");
  EXPECT_EQ(bench.panel().items("Combo1"), "");

  bench.load(4).plug();
  bench.panel().type("Text5", "20");
  EXPECT_TRUE(bench.panel().zan().AutoConnect());
  EXPECT_EQ(bench.panel().state(), "serial, 7 channels");
  bench.panel().type("Text5", "200");
  EXPECT_EQ(bench.panel().ask(":CHAN?"), "1");
}

TEST(SerialConnection, aLinkThatVanishesInTheMiddleOfTheReadBackIsPutUpWith) {
  SerialBench bench({4});
  bench.load(4).instrument.faults.add("vanish=20");
  bench.panel().type("Text1", "4");
  bench.panel().select("Combo2", 0);
  bench.panel().click("Command2");
  EXPECT_EQ(bench.panel().items("cmbChannel"), kChannels);
  EXPECT_EQ(bench.panel().ask("*IDN?"), "");
  bench.endComponent();
}

}  // namespace
}  // namespace lumodevice::end_to_end
