#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/panel_bench.hpp"

namespace lumodevice {
namespace {

using std::chrono::milliseconds;
using support::answer;
using support::kLinks;
using support::Over;
using support::PanelBench;
using support::silence;

/// A component whose exchanges run in turn, connected over each link.
class InTurn : public testing::TestWithParam<Over> {
 protected:
  InTurn() {
    bench.connect(GetParam());
    bench.instrument.on(":A?", "one\n");
    bench.instrument.on(":B?", "two\n");
    bench.journal();
  }

  /// Runs `act` in the next event pass.
  void inNextPass(std::function<void()> act) {
    acts_.push_back(std::move(act));
    passes_.push_back(bench.loop.observePasses([this] {
      if (!acts_.empty()) {
        const auto next = std::move(acts_.back());
        acts_.pop_back();
        next();
      }
    }));
  }

  PanelBench bench{support::Bench::Setup{.exchanges = Exchanges::InTurn}};

 private:
  std::vector<std::function<void()>> acts_;
  std::vector<toolkit::Subscription> passes_;
};

INSTANTIATE_TEST_SUITE_P(Links, InTurn, testing::ValuesIn(kLinks));

TEST_P(InTurn, anAnsweredQueryNeedsNoFurtherWait) {
  const auto before = bench.loop.now();
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_LE(bench.loop.now() - before, milliseconds(10));
}

TEST_P(InTurn, aCommandKeepsItsDistanceToWhatFollows) {
  const auto before = bench.loop.now();
  bench.ask(":C 1");
  EXPECT_LE(bench.loop.now() - before, milliseconds(10));
  bench.ask(":C 2");
  EXPECT_GE(bench.loop.now() - before, milliseconds(200));
}

TEST_P(InTurn, aQueryWithoutAnswerEndsInTheBox) {
  bench.instrument.on(":Q?", silence());
  EXPECT_EQ(bench.ask(":Q?"), "");
  EXPECT_EQ(bench.journal({"box"}), "box Error:Device has not sent back some data yet!\n");
}

TEST_P(InTurn, aLateAnswerIsNobodys) {
  for (const int late : {1900, 2200, 2500, 3000}) {
    bench.instrument.on(":Q?", answer("late\n", milliseconds(late)));
    EXPECT_EQ(bench.ask(":Q?"), "") << late;
    EXPECT_EQ(bench.ask(":A?"), "one") << late;
    EXPECT_EQ(bench.ask(":B?"), "two") << late;
  }
}

TEST_P(InTurn, anExchangeInsideAnotherOnesWaitLeavesItsAnswer) {
  bench.instrument.on(":A?", answer("one\n", milliseconds(400)));
  std::string inner;
  inNextPass([&] {
    bench.zan().SendCmd(":B?");
    inner = bench.zan().ResultStr();
  });
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_EQ(inner, "two");
}

TEST_P(InTurn, aCommandInsideAnotherOnesWaitIsSentToo) {
  bench.instrument.on(":A?", answer("one\n", milliseconds(400)));
  inNextPass([&] { bench.zan().SendCmd(":C 1"); });
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_EQ(bench.sent(), ":A?\n:C 1\n");
}

TEST_P(InTurn, withoutALinkThereIsNoAnswer) {
  EXPECT_EQ(bench.ask(":A?"), "one");
  bench.click(GetParam() == Over::Serial ? "optVISA" : "optConnRS232");
  EXPECT_EQ(bench.ask(":B?"), "");
}

TEST_P(InTurn, aCommandIsNotOvertakenByOneThatIsBegunWhileItWaits) {
  bench.ask(":C 0");
  int passes = 0;
  const auto watching = bench.loop.observePasses([&] {
    if (++passes == 1) {
      bench.zan().SendCmd(":LOAD 0");
    }
  });
  bench.zan().SendCmd(":LOAD 1");
  bench.run(milliseconds(500));
  bench.zan().SendCmd(":A?");
  EXPECT_GT(passes, 0);
  const std::string sent = bench.sent();
  EXPECT_LT(sent.find(":LOAD 1"), sent.find(":LOAD 0")) << sent;
}

TEST_P(InTurn, theAutoQueryShowsEachAnswerInItsOwnReadOut) {
  for (const int slow : {0, 60, 250, 600, 1200}) {
    bench.instrument.on(":FETC:VOLT?", answer("12.0\n", milliseconds(slow)));
    bench.instrument.on(":FETC:CURR?", answer("3.0\n", milliseconds(slow)));
    bench.instrument.on(":FETC:POW?", answer("36.0\n", milliseconds(slow)));
    bench.instrument.on(":LOAD?", answer("0\n", milliseconds(slow)));
    bench.instrument.on(":SYST:ERR?", answer("0\n", milliseconds(slow)));
    bench.zan().AutoQuery(true);
    bench.run(milliseconds(20'000));
    EXPECT_EQ(bench.text("txtVoltage(0)"), "12.0") << slow;
    EXPECT_EQ(bench.text("txtCurrent(0)"), "3.0") << slow;
    EXPECT_EQ(bench.text("txtPower(0)"), "36.0") << slow;
    bench.zan().AutoQuery(false);
  }
}

TEST_P(InTurn, whatIsSentBesideTheAutoQueryGoesOut) {
  bench.zan().AutoQuery(true);
  for (int i = 0; i < 5; ++i) {
    const std::string command = ":C " + std::to_string(i);
    bench.journal();
    bench.zan().SendCmd(command);
    EXPECT_NE(bench.sent().find(command + "\n"), std::string::npos);
    EXPECT_EQ(bench.ask(":A?"), "one");
    bench.run(milliseconds(130));
  }
}

}  // namespace
}  // namespace lumodevice
