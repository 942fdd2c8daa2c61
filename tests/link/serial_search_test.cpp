#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::answer;
using support::Bench;
using support::Instrument;
using support::kIdentity;
using support::lines;
using support::silence;

const std::string kFullIdentity = std::string(kIdentity) + "\r\n";

/// Nothing on the ports but what a test plugs in; the search is not begun.
class SerialSearch : public testing::Test {
 protected:
  SerialSearch() {
    bench.stopReceivePoll();
    bench.instrument.on("*IDN?", kFullIdentity);
    bench.instrument.on(":CHAN?", "9\n");
  }

  void plug(int port, Instrument* instrument = nullptr, int baud = 38400) {
    bench.serial.ports[port] = {.instrument = instrument, .baud = baud};
  }

  void selectSerial() {
    bench.click("optConnRS232");
    bench.journal();
  }

  /// Only one attempt at each port.
  void tryOneBaudRate() {
    auto& rates = bench.control<toolkit::ComboBox>("Combo2");
    rates.clear();
    rates.addItem("38400");
  }

  /// What the attempts of the search opened, without the scan before it.
  std::string attempts(std::initializer_list<std::string_view> beginnings) {
    const std::string journal = bench.journal(beginnings);
    const auto scan = journal.find("COM16 open");
    return journal.substr(journal.find('\n', scan) + 1);
  }

  Bench bench;
};

TEST_F(SerialSearch, theScanTriesAllPortsUpwardsAndClosesEachBeforeTheNext) {
  for (const int port : {3, 4, 16}) {
    plug(port);
  }
  bench.click("optConnRS232");
  std::vector<std::string> expected;
  for (int port = 1; port <= 16; ++port) {
    if (port == 4 || port == 5) {
      expected.push_back("COM" + std::to_string(port - 1) + " close");
    }
    expected.push_back("COM" + std::to_string(port) + " open 9600,n,8,1");
    expected.emplace_back("pass");
  }
  EXPECT_EQ(bench.journal(), lines(expected));
  EXPECT_EQ(bench.items("Combo1"), lines({"COM3", "COM4", "COM16"}));
}

TEST_F(SerialSearch, portsThatCannotBeOpenedAreSkippedWhateverTheReason) {
  for (int port = 1; port <= 16; ++port) {
    plug(port);
  }
  bench.script.fail("COM1 open", io::kSerialUnavailable);
  bench.script.fail("COM2 open", io::kSerialAlreadyOpen);
  bench.script.fail("COM5 open", io::kSerialInvalidValue);
  bench.click("optConnRS232");
  EXPECT_EQ(bench.items("Combo1"), lines({"COM3", "COM4", "COM6", "COM7", "COM8", "COM9", "COM10",
                                          "COM11", "COM12", "COM13", "COM14", "COM15", "COM16"}));
}

TEST_F(SerialSearch, selectingTheSerialLinkScansOnlyWhenNoPortIsListed) {
  plug(3);
  bench.click("optConnRS232");
  bench.click("optVISA");
  plug(4);
  bench.journal();
  bench.click("optConnRS232");
  EXPECT_EQ(bench.journal(), "");
  EXPECT_EQ(bench.items("Combo1"), lines({"COM3"}));
}

TEST_F(SerialSearch, everyAutomaticConnectListsThePortsAnew) {
  plug(3);
  plug(5);
  selectSerial();
  bench.click("cmdAuto");
  bench.click("cmdAuto");
  EXPECT_EQ(bench.items("Combo1"), lines({"COM3", "COM5"}));
  bench.serial.ports.erase(3);
  bench.click("cmdAuto");
  EXPECT_EQ(bench.items("Combo1"), lines({"COM5"}));
}

TEST_F(SerialSearch, withoutPortsNothingIsTriedAndThePanelLooksUnconnected) {
  bench.control<toolkit::ComboBox>("Combo1").addItem("COM7");
  selectSerial();
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.journal({"sleep", "COM3"}), lines({"COM3 open 9600,n,8,1"}));
  EXPECT_EQ(bench.items("Combo1"), "");
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "False");
}

TEST_F(SerialSearch, oneAttemptAsksTwiceAndTakesThreePointThreeSeconds) {
  Instrument other;
  other.on("*IDN?", "OTHER\n");
  plug(3, &other);
  tryOneBaudRate();
  selectSerial();
  const auto before = bench.loop.now();
  bench.click("cmdAuto");
  EXPECT_EQ(bench.loop.now() - before, std::chrono::milliseconds(3300));
  EXPECT_EQ(attempts({"COM", "sleep", "pass"}),
            lines({"pass", "COM3 open 38400,n,8,1", "COM3 write *IDN?\\r", "sleep 1500",
                   "COM3 read OTHER\\n", "pass", "sleep 300", "COM3 write *IDN?\\r", "sleep 1500",
                   "COM3 read OTHER\\n", "pass", "pass"}));
}

TEST_F(SerialSearch, withoutAMatchAllPortsAreTriedDownwardsAtEachRateInTurn) {
  plug(3);
  plug(5);
  selectSerial();
  bench.click("cmdAuto");
  EXPECT_EQ(attempts({"COM3 open", "COM5 open", "COM16 open"}),
            lines({"COM5 open 38400,n,8,1", "COM3 open 38400,n,8,1", "COM5 open 19200,n,8,1",
                   "COM3 open 19200,n,8,1", "COM5 open 9600,n,8,1", "COM3 open 9600,n,8,1",
                   "COM5 open 4800,n,8,1", "COM3 open 4800,n,8,1"}));
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_FALSE(bench.zan().bDevAvaliable());
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "False");
}

TEST_F(SerialSearch, anInstrumentAtNineThousandSixHundredIsFoundAfterAllPortsAtTheFasterRates) {
  plug(3, &bench.instrument, 9600);
  plug(5);
  selectSerial();
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(attempts({"COM3 open", "COM5 open", "COM16 open", "COM3 close", "COM5 close"}),
            lines({"COM5 open 38400,n,8,1", "COM5 close", "COM3 open 38400,n,8,1", "COM3 close",
                   "COM5 open 19200,n,8,1", "COM5 close", "COM3 open 19200,n,8,1", "COM3 close",
                   "COM5 open 9600,n,8,1", "COM5 close", "COM3 open 9600,n,8,1"}));
  EXPECT_EQ(bench.text("Combo1"), "COM3");
  EXPECT_EQ(bench.text("Combo2"), "9600");
}

TEST_F(SerialSearch, ofTwoInstrumentsAtOneRateTheOneOnTheHigherPortIsFound) {
  plug(3, &bench.instrument);
  plug(5, &bench.instrument);
  selectSerial();
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.text("Combo1"), "COM5");
  EXPECT_EQ(bench.ask(":CHAN?"), "9");
}

TEST_F(SerialSearch, ofTwoInstrumentsTheOneAtTheFasterRateIsFound) {
  plug(3, &bench.instrument, 38400);
  plug(5, &bench.instrument, 19200);
  selectSerial();
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.text("Combo1"), "COM3");
}

TEST_F(SerialSearch, thePanelShowsTheAttempt) {
  plug(3);
  plug(5);
  tryOneBaudRate();
  selectSerial();
  bench.watch({"Combo1", "Combo2"});
  bench.click("cmdAuto");
  EXPECT_EQ(bench.journal({"Combo1.ListIndex", "Combo2.ListIndex", "COM5 open 38", "COM3 open 38"}),
            lines({"Combo1.ListIndex 1", "Combo2.ListIndex 0", "COM5 open 38400,n,8,1",
                   "Combo1.ListIndex 0", "COM3 open 38400,n,8,1"}));
}

struct Answers {
  std::string first;
  std::string second;
  bool found;
};

TEST_F(SerialSearch, onlyATerminatedSecondAnswerWithTheProductWordCounts) {
  plug(3, &bench.instrument);
  tryOneBaudRate();
  selectSerial();
  for (const auto& [first, second, found] : {
           Answers{"", "ZAN\n", true},
           Answers{"noise\xFF", "ZAN\r", true},
           Answers{"OTHER\n", "a,ZAN,b\r\n", true},
           Answers{"", std::string("\0ZAN\n", 5), true},
           Answers{"ZAN\n", "", false},
           Answers{"ZAN\n", "OTHER\n", false},
           Answers{"ZAN\n", "ZAN", false},
           Answers{"ZAN\n", "ZAN\n ", false},
           Answers{"ZAN\n", "zan\n", false},
           Answers{"ZAN\n", "\n", false},
       }) {
    bench.instrument.on("*IDN?", {answer(first), answer(second), answer(second)});
    EXPECT_EQ(bench.zan().AutoConnect(), found) << support::escaped(second);
    EXPECT_EQ(bench.zan().isConnected(), found) << support::escaped(second);
  }
}

TEST_F(SerialSearch, anAnswerMayTakeAsLongAsTheWait) {
  plug(3, &bench.instrument);
  tryOneBaudRate();
  selectSerial();
  bench.instrument.on("*IDN?", answer(kFullIdentity, std::chrono::milliseconds(1500)));
  EXPECT_TRUE(bench.zan().AutoConnect());
}

TEST_F(SerialSearch, aFoundInstrumentStaysOpenAndListsItsChannels) {
  plug(3, &bench.instrument);
  selectSerial();
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.journal({"COM3 close"}), lines({"COM3 close"}));
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(bench.zan().ConnStyle(), LinkKind::Serial);
  EXPECT_EQ(bench.items("cmbChannel"), lines({"CH1-ZAN2040", "CH2-ZAN6310"}));
}

TEST_F(SerialSearch, keepsTheIdentityOfTheLastConnectThatStoresOne) {
  bench.zan().IDN("earlier");
  plug(3, &bench.instrument);
  selectSerial();
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.zan().IDN(), "earlier");
}

TEST_F(SerialSearch, aPortThatFailsWhileItIsTriedIsPassedOver) {
  for (const auto& [call, code] :
       std::vector<std::pair<const char*, int>>{{"COM5 open 38400", io::kSerialUnavailable},
                                                {"COM5 open 38400", io::kSerialAlreadyOpen},
                                                {"COM5 write", io::kSerialDeviceBusy},
                                                {"COM5 write", io::kSerialUnavailable},
                                                {"COM5 read", io::kSerialReadError}}) {
    Bench fresh;
    fresh.stopReceivePoll();
    fresh.serial.ports[3].instrument = &bench.instrument;
    fresh.serial.ports[5].instrument = &bench.instrument;
    fresh.click("optConnRS232");
    fresh.script.fail(call, code);
    EXPECT_TRUE(fresh.zan().AutoConnect()) << call;
    EXPECT_EQ(fresh.text("Combo1"), "COM3") << call;
  }
}

TEST_F(SerialSearch, inVainItEndsAnEarlierLink) {
  bench.connectSerial();
  bench.instrument.on("*IDN?", silence());
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_FALSE(bench.zan().bDevAvaliable());
}

}  // namespace
}  // namespace lumodevice
