#include <gmock/gmock.h>

#include "tests/end_to_end/serial_bench.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::end_to_end {
namespace {

using std::chrono::milliseconds;
using support::lines;

constexpr const char* kIdentity = "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3";

/// Connected to COM4.
class SerialExchange : public testing::Test {
 protected:
  SerialExchange() {
    bench.connectByHand(4);
    panel.boxes();
    load.heard.clear();
  }

  void fault(const std::string& text) { load.instrument.faults.add(text); }

  SerialBench bench{4};
  RealPanel& panel = bench.panel();
  LoadOnTerminal& load = bench.load(4);
};

TEST_F(SerialExchange, aCommandArrivesAndAQueryIsAnswered) {
  panel.zan().SendCmd("*CLS;:CHAN 5");
  EXPECT_EQ(panel.ask(":CHAN?"), "5");
  EXPECT_EQ(panel.ask("*IDN?"), kIdentity);
  EXPECT_EQ(panel.ask(":CHAN? LIST"), "1,2,3,4,5,6,7");
  EXPECT_EQ(panel.zan().ErrMessage(), "0,\"No error\"");
  EXPECT_EQ(load.heard, (std::vector<std::string>{"*CLS;:CHAN 5", ":CHAN?", "*IDN?", ":CHAN? LIST",
                                                  ":SYST:ERR?"}));
  EXPECT_EQ(panel.boxes(), "");
}

TEST_F(SerialExchange, anAnswerInPiecesIsPutTogether) {
  fault("pieces=1 gap=5");
  EXPECT_EQ(panel.ask("*IDN?"), kIdentity);
  EXPECT_EQ(panel.ask(":CHAN?"), "1");
}

TEST_F(SerialExchange, aLateAnswerIsWaitedFor) {
  fault("late=400");
  EXPECT_EQ(panel.ask("*IDN?"), kIdentity);
  EXPECT_EQ(panel.boxes(), "");
}

TEST_F(SerialExchange, anUnansweredQueryIsReportedOnceAndTheNextOneWorks) {
  EXPECT_EQ(panel.ask(":NONE:SUCH?"), "");
  EXPECT_EQ(panel.boxes(), lines({kUnanswered}));
  EXPECT_EQ(panel.ask(":CHAN?"), "1");
}

TEST_F(SerialExchange, anAnswerThatIsNotFinishedInTenPollsIsDroppedAndTheNextOneIsWhole) {
  // Eleven bytes, each in a poll of its own.
  fault("unterminated");
  fault("long=12");
  fault("pieces=1 gap=1000");
  panel.type("Text2", ":CHAN?");
  panel.click("cmdSendCmd");
  bench.run(milliseconds(12'000));
  EXPECT_EQ(panel.text("txtReturn"), "");
  EXPECT_EQ(panel.text("Text4"), "0") << "dropped";
  load.instrument.faults.clear();
  EXPECT_EQ(panel.ask("*IDN?"), kIdentity);
}

TEST_F(SerialExchange, theQueuedCommandFollowsTheAnswer) {
  panel.type("txtSetCmd", " :CHAN 3 ");
  EXPECT_EQ(panel.ask("*IDN?"), kIdentity);
  bench.run(milliseconds(200));
  EXPECT_EQ(load.heard, (std::vector<std::string>{"*IDN?", ":CHAN 3"}));
  EXPECT_EQ(panel.text("txtSetCmd"), "");
  EXPECT_EQ(panel.ask(":CHAN?"), "3");
}

TEST_F(SerialExchange, garbledAnswersAreShownAsTheyCame) {
  fault("garble");
  panel.ask(":CHAN?");
  EXPECT_EQ(panel.text("txtReturn"), "\xA4") << "\"1\" with disturbed bits";
  load.instrument.faults.clear();
  EXPECT_EQ(panel.ask(":CHAN?"), "1");
}

TEST_F(SerialExchange, anAnswerLongerThanAskedForComesWhole) {
  fault("long=301");
  EXPECT_EQ(panel.ask(":CHAN?"), "1" + std::string(299, 'X'));
}

TEST_F(SerialExchange, anAnswerOfSixtyKilobytesComesWholeOrNotAtAll) {
  fault("long=61440");
  panel.ask(":CHAN?");
  bench.run(milliseconds(3000));
  const std::string& answer = panel.text("txtReturn");
  EXPECT_TRUE(answer.empty() || answer == "1" + std::string(61438, 'X')) << answer.size();
  load.instrument.faults.clear();
  panel.type("Text5", "20");
  EXPECT_TRUE(panel.zan().AutoConnect());
  panel.type("Text5", "200");
  EXPECT_EQ(panel.ask(":CHAN?"), "1");
}

TEST_F(SerialExchange, autoQueryAsksInTurnAndItsErrorAnswersStayOutOfTheReadOuts) {
  panel.zan().AutoQuery(true);
  while (load.heard.size() < 10) {
    bench.run(milliseconds(200));
  }
  panel.zan().AutoQuery(false);
  load.heard.resize(10);
  const std::vector<std::string> once{":FETC:VOLT?", ":FETC:CURR?", ":FETC:POW?", ":LOAD?",
                                      ":SYST:ERR?"};
  std::vector<std::string> twice = once;
  twice.insert(twice.end(), once.begin(), once.end());
  EXPECT_EQ(load.heard, twice);
}

}  // namespace
}  // namespace lumodevice::end_to_end
