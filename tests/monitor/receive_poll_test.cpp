#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using std::chrono::milliseconds;
using support::answer;
using support::Bench;
using support::lines;
using support::silence;

/// A serial link with a query under way that nobody has answered yet, just before a poll.
class ReceivePoll : public testing::Test {
 protected:
  ReceivePoll() {
    bench.connectSerial();
    bench.instrument.on(":Q?", silence());
    ask(":Q?");
  }

  void ask(std::string_view query) {
    bench.type("Text2", query);
    bench.click("cmdSendCmd");
    bench.run(milliseconds(0));  // a poll is due at once, and from now on every 35 ms
    bench.journal();
  }

  /// One poll that finds these bytes.
  void poll(std::string bytes) {
    bench.serial.say(3, answer(std::move(bytes)));
    bench.run(milliseconds(35));
  }

  std::string result() { return bench.text("txtReturn"); }

  Bench bench;
};

TEST_F(ReceivePoll, aTickReadsOnceAndProcessesEventsOnce) {
  bench.serial.say(3, answer("1.5\n"));
  bench.run(milliseconds(35));
  EXPECT_EQ(bench.journal(), lines({"pass", "pass", "COM3 read 1.5\\n", "pass"}));
}

TEST_F(ReceivePoll, anAnswerInPiecesIsPutTogether) {
  poll("1");
  poll(".");
  EXPECT_EQ(result(), "");
  poll("5\n");
  EXPECT_EQ(result(), "1.5");
}

TEST_F(ReceivePoll, theCountOfPollsIsShownAndStartsAnewWithTheNextAnswer) {
  poll("1");
  EXPECT_EQ(bench.text("Text4"), "1");
  poll("2");
  EXPECT_EQ(bench.text("Text4"), "2");
  poll("\n");
  EXPECT_EQ(bench.text("Text4"), "0");
}

TEST_F(ReceivePoll, pollsThatFindNothingDoNotCount) {
  bench.run(milliseconds(35 * 40));
  EXPECT_EQ(bench.text("Text4"), "0");
  poll("1.5\n");
  EXPECT_EQ(result(), "1.5");
}

TEST_F(ReceivePoll, anAnswerMayTakeTenPolls) {
  for (int i = 0; i < 9; ++i) {
    poll("x");
  }
  EXPECT_EQ(bench.text("Text4"), "9");
  poll("y\n");
  EXPECT_EQ(result(), "xxxxxxxxxy");
}

TEST_F(ReceivePoll, anAnswerThatTakesElevenPollsIsDropped) {
  for (int i = 0; i < 10; ++i) {
    poll("x");
  }
  EXPECT_EQ(bench.text("Text4"), "10");
  poll("y\n");
  EXPECT_EQ(result(), "");
  EXPECT_EQ(bench.text("Text4"), "0");
}

TEST_F(ReceivePoll, afterADroppedAnswerNothingIsReadUntilTheNextQuery) {
  for (int i = 0; i < 11; ++i) {
    poll("x");
  }
  bench.journal();
  poll("late\n");
  EXPECT_EQ(bench.journal({"COM3 read"}), "");
  EXPECT_EQ(result(), "");
}

struct Answer {
  std::string received;
  std::string result;
  const char* lastByte;
};

TEST_F(ReceivePoll, oneTerminatorIsRemovedAndTheLastByteShown) {
  for (const auto& [received, text, lastByte] : {
           Answer{"1.5\n", "1.5", "10"},
           Answer{"1.5\r", "1.5", "13"},
           Answer{"1.5\r\n", "1.5\r", "10"},
           Answer{"1.5\n\r", "1.5\n", "13"},
           Answer{"12\n34", "12\n34", "52"},
           Answer{"\n\xFF", "\n\xFF", "255"},
           Answer{std::string("a\0\n", 3), std::string("a\0", 2), "10"},
           Answer{std::string(5000, 'x') + "\n", std::string(5000, 'x'), "10"},
           Answer{"\n", "", "10"},
       }) {
    ask(":Q?");
    poll(received);
    EXPECT_EQ(result(), text);
    EXPECT_EQ(bench.text("Text3"), lastByte);
  }
}

TEST_F(ReceivePoll, restsAfterAnAnswer) {
  poll("1\n");
  EXPECT_EQ(bench.read("Timer2", "Enabled"), "False");
  bench.journal();
  bench.run(milliseconds(1000));
  EXPECT_EQ(bench.journal(), lines({"pass", "pass"}));
}

TEST_F(ReceivePoll, aQueuedCommandGoesOutAfterTheAnswer) {
  bench.type("txtSetCmd", "  :LOAD 1 ");
  poll("1\n");
  EXPECT_EQ(bench.journal({"COM3"}), lines({"COM3 read 1\\n", "COM3 write :LOAD 1\\n"}));
  EXPECT_EQ(bench.text("txtSetCmd"), "");
  EXPECT_EQ(bench.read("Timer2", "Enabled"), "True");
}

TEST_F(ReceivePoll, aQueuedCommandGoesOutOnce) {
  bench.type("txtSetCmd", ":LOAD 1");
  poll("1\n");
  ask(":Q?");
  poll("2\n");
  EXPECT_EQ(bench.journal({"COM3 write"}), "");
  EXPECT_EQ(result(), "2");
}

TEST_F(ReceivePoll, aQueuedCommandTakesTheTerminatorOfTheConsolesCommand) {
  bench.instrument.on("*RDT?", silence());
  bench.type("txtSetCmd", "*RDT?");
  poll("1\n");
  EXPECT_EQ(bench.journal({"COM3 write"}), lines({"COM3 write *RDT?\\n"}));
  ask("*RDT?");
  bench.type("txtSetCmd", ":LOAD 1");
  poll("1\n");
  EXPECT_EQ(bench.journal({"COM3 write"}), lines({"COM3 write :LOAD 1\\r"}));
}

TEST_F(ReceivePoll, aQueuedCommandThatCannotBeWrittenIsNotTriedAgain) {
  bench.type("txtSetCmd", ":LOAD 1");
  bench.script.fail("COM3 write", io::kSerialUnavailable);
  poll("1\n");
  EXPECT_EQ(result(), "1");
  EXPECT_EQ(bench.text("txtSetCmd"), "");
  bench.run(milliseconds(200));
  EXPECT_EQ(bench.journal({"COM3 write"}), lines({"COM3 write :LOAD 1\\n"}));
}

TEST_F(ReceivePoll, bytesThatNobodyAskedForStayInThePort) {
  poll("1\n");
  bench.control<toolkit::Timer>("Timer2").setEnabled(true);
  bench.journal();
  poll("unasked\n");
  EXPECT_EQ(bench.journal({"COM3 read"}), "");
  EXPECT_EQ(result(), "1");
}

TEST_F(ReceivePoll, anotherCommandEndsTheWaitForTheAnswer) {
  bench.type("Text2", ":LOAD 1");
  bench.click("cmdSendCmd");
  bench.journal();
  poll("1\n");
  EXPECT_EQ(bench.journal({"COM3 read"}), "");
}

TEST_F(ReceivePoll, aPortThatFailsToReadIsPolledOn) {
  bench.script.fail("COM3 read", io::kSerialReadError);
  poll("1.5\n");
  EXPECT_EQ(result(), "");
  EXPECT_EQ(bench.text("Text4"), "0");
  bench.script.heal("COM3 read");
  bench.run(milliseconds(35));
  EXPECT_EQ(result(), "1.5");
}

TEST_F(ReceivePoll, aClosedPortIsPolledInPeace) {
  bench.click("optVISA");
  bench.control<toolkit::Timer>("Timer2").setEnabled(true);
  bench.run(milliseconds(100));
  EXPECT_EQ(bench.text("Text4"), "0");
}

TEST(ReceivePollAtStart, runsAtTheIntervalOfItsField) {
  Bench bench;
  EXPECT_EQ(bench.read("Timer2", "Enabled"), "True");
  EXPECT_EQ(bench.read("Timer2", "Interval"), "35");
  EXPECT_EQ(bench.text("Text4"), "Text4");
  bench.run(milliseconds(35));
  EXPECT_EQ(bench.text("Text4"), "0");
}

}  // namespace
}  // namespace lumodevice
