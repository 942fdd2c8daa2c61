#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using std::chrono::milliseconds;
using support::answer;
using support::Bench;
using support::lines;
using support::silence;

constexpr const char* kNoAnswer = "box Error:Device has not sent back some data yet!";

struct Stage {
  int answerAfter;  ///< milliseconds
  std::vector<std::string> waits;
  const char* answer;
};

TEST(CommandBox, theWaitForAnAnswerGrowsInThreeStagesAndEndsInOneBox) {
  for (const auto& [after, waits, text] : {
           Stage{0, {"sleep 50", "sleep 200"}, "1.5"},
           Stage{50, {"sleep 50", "sleep 200"}, "1.5"},
           Stage{51, {"sleep 50", "sleep 200", "sleep 400"}, "1.5"},
           Stage{250, {"sleep 50", "sleep 200", "sleep 400"}, "1.5"},
           Stage{251, {"sleep 50", "sleep 200", "sleep 400", "sleep 800"}, "1.5"},
           Stage{650, {"sleep 50", "sleep 200", "sleep 400", "sleep 800"}, "1.5"},
           Stage{1450, {"sleep 50", "sleep 200", "sleep 400", "sleep 800"}, "1.5"},
           Stage{1451, {"sleep 50", "sleep 200", "sleep 400", "sleep 800", kNoAnswer}, ""},
       }) {
    Bench bench;
    bench.connectSerial();
    bench.instrument.on(":Q?", answer("1.5\n", milliseconds(after)));
    EXPECT_EQ(bench.ask(":Q?"), text) << after;
    EXPECT_EQ(bench.journal({"sleep", "box"}), lines(waits)) << after;
  }
}

TEST(CommandBox, anAnswerLaterThanTheBoxStillBecomesTheResult) {
  Bench bench;
  bench.connectSerial();
  bench.instrument.on(":Q?", answer("1.5\n", milliseconds(3000)));
  EXPECT_EQ(bench.ask(":Q?"), "");
  bench.run(milliseconds(2000));
  EXPECT_EQ(bench.zan().ResultStr(), "1.5");
}

TEST(CommandBox, aQueryWithoutAnswerTakesSevenUnitsAndIsNotRepeated) {
  Bench bench;
  bench.connectVisaCom();
  bench.type("Text5", "10");
  bench.instrument.on(":Q?", silence());
  EXPECT_EQ(bench.ask(":Q?"), "");
  EXPECT_EQ(bench.journal(), lines({"pass", "Timeout 200", "WriteString :Q?\\n END", "sleep 10",
                                    "ReadString", "sleep 10", "ReadString", "pass", "sleep 10",
                                    "pass", "sleep 20", "pass", "sleep 40", "pass", kNoAnswer}));
}

TEST(CommandBox, aCommandWithoutQuestionMarkWaitsOneUnit) {
  Bench bench;
  bench.connectSerial();
  bench.ask(":CHAN 1");
  EXPECT_EQ(bench.journal({"sleep", "box"}), lines({"sleep 200"}));
}

TEST(CommandBox, aBlankCommandDoesNothing) {
  Bench bench;
  bench.connectVisa();
  bench.type("Text2", "kept");
  for (const char* blank : {"", " ", "     "}) {
    bench.zan().SendCmd(blank);
  }
  EXPECT_EQ(bench.journal(), "");
  EXPECT_EQ(bench.text("Text2"), "kept");
}

TEST(CommandBox, theSameCommandTwiceIsSentTwice) {
  Bench bench;
  bench.connectVisa();
  for (const char* command : {":LOAD 1", " :LOAD 1", ":LOAD 1 ", " :LOAD 1 "}) {
    bench.zan().SendCmd(command);
    bench.zan().SendCmd(command);
    EXPECT_EQ(bench.journal({"viWrite"}), lines({"viWrite 4 :LOAD 1\\n", "viWrite 4 :LOAD 1\\n"}));
  }
}

TEST(CommandBox, typingIntoItSendsAndEmptyingItSendsNothing) {
  Bench bench;
  bench.connectVisa();
  bench.type("TXT", ":LOAD 1");
  EXPECT_EQ(bench.journal({"viWrite"}), lines({"viWrite 4 :LOAD 1\\n"}));
  bench.type("TXT", "");
  EXPECT_EQ(bench.journal(), "");
  EXPECT_EQ(bench.text("Text2"), "");
}

TEST(CommandBox, withoutALinkTheCommandOnlyReachesTheConsole) {
  Bench bench;
  bench.type("txtReturn", "kept");
  bench.zan().SendCmd(":Q?");
  EXPECT_EQ(bench.journal(), "");
  EXPECT_EQ(bench.text("Text2"), ":Q?");
  EXPECT_EQ(bench.text("txtReturn"), "kept");
}

TEST(CommandBox, aUnitThatIsNoUsableNumberIsNoWait) {
  Bench bench;
  bench.connectVisa();
  for (const char* unit : {"0", "", "fast", "-5", "1E300", "1E999"}) {
    bench.type("Text5", unit);
    EXPECT_EQ(bench.ask(":Q?"), "0") << unit;
    EXPECT_EQ(bench.journal({"sleep"}), "") << unit;
  }
}

TEST(CommandBox, theErrorMessageIsTheAnswerToTheErrorQuery) {
  Bench bench;
  bench.connectVisa();
  bench.instrument.on(":SYST:ERR?", "-113,\"Undefined header\"\n");
  EXPECT_EQ(bench.zan().ErrMessage(), "-113,\"Undefined header\"");
  EXPECT_EQ(bench.zan().ErrMessage(), "-113,\"Undefined header\"");
  EXPECT_EQ(bench.journal({"viWrite"}),
            lines({"viWrite 4 :SYST:ERR?\\n", "viWrite 4 :SYST:ERR?\\n"}));
}

TEST(CommandBox, withoutALinkThereIsNoErrorMessageAndNothingIsSent) {
  Bench bench;
  EXPECT_EQ(bench.zan().ErrMessage(), "");
  EXPECT_EQ(bench.journal(), "");
  EXPECT_EQ(bench.text("TXT"), "");
}

TEST(CommandBox, aCommandSentWithinTheWaitOfAnotherOneRunsToItsEndAndItsAnswerStays) {
  Bench bench;
  bench.connectSerial();
  bench.instrument.on(":OUTER?", silence());
  bench.instrument.on(":INNER?", "inner\n");
  const auto watching = bench.loop.observePasses([&, calls = 0]() mutable {
    if (++calls == 3) {
      bench.zan().SendCmd(":INNER?");
    }
  });
  EXPECT_EQ(bench.ask(":OUTER?"), "inner");
  EXPECT_EQ(bench.journal({"COM3 write", "box"}),
            lines({"COM3 write :OUTER?\\n", "COM3 write :INNER?\\n"}));
}

}  // namespace
}  // namespace lumodevice
