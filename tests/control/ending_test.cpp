#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "lumodevice/toolkit/hand.hpp"
#include "tests/control/acts.hpp"

namespace lumodevice {
namespace {

using support::Act;
using support::lines;
using support::Over;
using support::PanelBench;

/// What goes when the component does, link by link.
std::string releases(Over link) {
  switch (link) {
    case Over::VisaLibrary:
      return lines({"viClose 4", "viClose 2", "viClose 1"});
    case Over::VisaCom:
      return lines({"released GPIB0::7::INSTR"});
    case Over::Serial:
      return lines({"viClose 0", "viClose 0", "viClose 0", "COM3 close"});
  }
  return {};
}

/// A component that its host lets go of while one of its operations waits.
class EndedWithin : public testing::TestWithParam<Over> {
 protected:
  struct Outcome {
    bool ended = false;
    std::string released;    ///< by ending the component
    std::string afterwards;  ///< what the operation still did
  };

  /// The act, with the component's end in its n-th event pass.
  [[nodiscard]] Outcome run(const Act& act, int pass) const {
    PanelBench bench;
    support::plugEverywhere(bench);
    bench.connect(GetParam());
    Outcome outcome;
    const auto watching = bench.loop.observePasses([&] {
      if (--pass == 0) {
        (void)bench.journal();
        bench.destroy();
        outcome = {true, bench.journal(), ""};
      }
    });
    act.run(bench);
    outcome.afterwards = bench.journal();
    return outcome;
  }
};

INSTANTIATE_TEST_SUITE_P(Links, EndedWithin, testing::ValuesIn(support::kLinks));

TEST_P(EndedWithin, anyOperationDoesNothingMore) {
  constexpr int kMostPasses = 40;
  int runs = 0;
  for (const Act& act : support::allActs()) {
    bool ended = act.single;
    for (int pass = 1; ended && pass <= kMostPasses; ++pass) {
      const Outcome outcome = run(act, pass);
      ended = outcome.ended;
      if (ended) {
        EXPECT_EQ(outcome.afterwards, "") << act.name << ", pass " << pass;
        ++runs;
      }
    }
  }
  EXPECT_GT(runs, 200);
}

TEST_P(EndedWithin, aCommandReleasesTheLinkAtOnce) {
  const Act send{"SendCmd", [](PanelBench& bench) { bench.zan().SendCmd(":FETC:VOLT?"); }};
  for (const int pass : {1, 2}) {
    EXPECT_EQ(run(send, pass).released, releases(GetParam())) << pass;
  }
}

TEST_P(EndedWithin, anInformationBoxReleasesTheLinkAtOnce) {
  PanelBench bench;
  std::string released;
  bench.connect(GetParam());
  bench.instrument.on(":SILENT?", support::silence());
  bench.onBox = [&] {
    (void)bench.journal();
    bench.destroy();
    released = bench.journal();
  };
  bench.zan().SendCmd(":SILENT?");
  EXPECT_EQ(released, releases(GetParam()));
  EXPECT_EQ(bench.journal(), "");
}

TEST_P(EndedWithin, anyWaitIsTheLastOne) {
  PanelBench bench;
  bench.connect(GetParam());
  const auto watching = bench.loop.observeSleeps([&](std::int32_t /*milliseconds*/) {
    bench.destroy();
    (void)bench.journal();
  });
  bench.zan().SendCmd(":FETC:VOLT?");
  EXPECT_EQ(bench.journal(), "");
}

TEST_P(EndedWithin, theAutoQueryStopsIt) {
  PanelBench bench;
  bench.connect(GetParam());
  bench.zan().AutoQuery(true);
  int passes = 0;
  const auto watching = bench.loop.observePasses([&] {
    if (++passes == 20) {
      bench.destroy();
      (void)bench.journal();
    }
  });
  bench.run(std::chrono::seconds(5));
  EXPECT_GE(passes, 20);
  EXPECT_EQ(bench.journal(), "pass\n") << "the loop's own, when the time is over";
}

TEST_P(EndedWithin, twoNestedOperationsBothEnd) {
  PanelBench bench;
  support::plugEverywhere(bench);
  bench.connect(GetParam());
  int passes = 0;
  const auto watching = bench.loop.observePasses([&] {
    if (++passes == 1) {
      bench.zan().SendCmd(":CURR:STAT:L1?");
    } else if (passes == 3) {
      bench.destroy();
      (void)bench.journal();
    }
  });
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.journal(), "");
}

/// A host may keep a control while an operation of the ended component still returns: nothing that
/// it does to it reaches the link any more, which may be somebody else's by then.
TEST_P(EndedWithin, whatIsLeftOfThePanelIsNotConnected) {
  PanelBench bench;
  support::plugEverywhere(bench);
  bench.connect(GetParam());
  auto& send = bench.control<toolkit::CommandButton>("cmdSendCmd");
  auto& command = bench.control<toolkit::TextBox>("TXT");
  int passes = 0;
  const auto watching = bench.loop.observePasses([&] {
    if (++passes == 1) {
      bench.destroy();
      (void)bench.journal();
      EXPECT_FALSE(send.enabled());
      EXPECT_FALSE(toolkit::hand::click(send));
      command.setText(":CHAN 1");
    }
  });
  bench.zan().SendCmd(":FETC:VOLT?");
  EXPECT_EQ(passes, 1);
  EXPECT_EQ(bench.journal(), "");
}

TEST_P(EndedWithin, aMemberGivesTheEmptyValueWhereverThatIs) {
  int ends = 0;
  for (bool ended = true; ended; ++ends) {
    SCOPED_TRACE(ends);
    PanelBench bench;
    bench.connect(GetParam());
    ended = false;
    const auto watching = bench.loop.observePasses([&, left = ends]() mutable {
      if (left-- == 0) {
        ended = true;
        bench.destroy();
        (void)bench.journal();
      }
    });
    const std::string answer = bench.zan().ErrMessage();
    EXPECT_EQ(answer, ended ? "" : "0.5");
    if (ended) {
      EXPECT_EQ(bench.journal(), "");
    }
  }
  EXPECT_GT(ends, 2);
}

TEST(Ending, keepsWhatTheHostTookOfTheLink) {
  PanelBench bench;
  bench.connect(Over::VisaCom);
  const auto device = bench.zan().devZAN();
  bench.destroy();
  EXPECT_EQ(bench.journal(), "");
  EXPECT_NE(device->IO(), nullptr);
}

}  // namespace
}  // namespace lumodevice
