#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "tests/control/acts.hpp"
#include "tests/control/soundness.hpp"

namespace lumodevice {
namespace {

using support::Act;
using support::Over;
using support::PanelBench;

struct HostsError : std::runtime_error {
  HostsError() : std::runtime_error("of the host's own") {}
};

/// Throws at the n-th change that it is told of.
class ThrowingView : public toolkit::View {
 public:
  explicit ThrowingView(int at) : left_(at) {}
  void changed(const toolkit::Control& /*control*/, toolkit::Property /*property*/,
               int /*item*/) override {
    if (--left_ == 0) {
      throw HostsError();
    }
  }

 private:
  int left_;
};

/// A component whose host throws from what the component calls.
class ThrowingHost : public testing::TestWithParam<Over> {
 protected:
  void start(PanelBench& bench) const {
    support::plugEverywhere(bench);
    bench.connect(GetParam());
  }

  /// True when the act threw what the host did.
  static bool throwsThrough(const Act& act, PanelBench& bench) {
    try {
      act.run(bench);
    } catch (const HostsError&) {
      return true;
    }
    return false;
  }

  /// The panel's own state is sound, and a connect and a command work.
  static void expectSound(PanelBench& bench) {
    support::expectConsistent(bench);
    support::expectUsable(bench);
  }
};

INSTANTIATE_TEST_SUITE_P(Links, ThrowingHost, testing::ValuesIn(support::kLinks));

TEST_P(ThrowingHost, fromTheInputOfItsLoopLeavesTheComponentUsable) {
  int thrown = 0;
  for (const Act& act : support::allActs()) {
    for (int pass = 1;; pass += 1 + pass / 4) {
      PanelBench bench;
      start(bench);
      auto watching = bench.loop.observePasses([left = pass]() mutable {
        if (--left == 0) {
          throw HostsError();
        }
      });
      const bool threw = throwsThrough(act, bench);
      watching.end();
      SCOPED_TRACE(act.name + ", pass " + std::to_string(pass));
      expectSound(bench);
      if (!threw) {
        break;
      }
      ++thrown;
    }
  }
  EXPECT_GT(thrown, 100);
}

TEST_P(ThrowingHost, fromAViewLeavesTheComponentUsable) {
  int thrown = 0;
  for (const Act& act : support::allActs()) {
    for (int change = 1;; change += 1 + change / 16) {
      PanelBench bench;
      start(bench);
      ThrowingView view(change);
      bench.zan().surface().attach(view);
      const bool threw = throwsThrough(act, bench);
      bench.zan().surface().detach(view);
      SCOPED_TRACE(act.name + ", change " + std::to_string(change));
      expectSound(bench);
      if (!threw) {
        break;
      }
      ++thrown;
    }
  }
  EXPECT_GT(thrown, 200);
}

TEST_P(ThrowingHost, fromAViewLeavesTheAutoQueryAsItsBoxShowsIt) {
  for (const bool on : {true, false}) {
    int changes = 0;
    for (bool threw = true; threw; ++changes) {
      SCOPED_TRACE(std::string(on ? "on" : "off") + ", change " + std::to_string(changes + 1));
      PanelBench bench;
      start(bench);
      bench.zan().AutoQuery(!on);
      ThrowingView view(changes + 1);
      bench.zan().surface().attach(view);
      threw = throwsThrough({"", [&](PanelBench& it) { it.zan().AutoQuery(on); }}, bench);
      bench.zan().surface().detach(view);
      EXPECT_EQ(bench.zan().AutoQuery(), on);
      (void)bench.sent();
      bench.run(std::chrono::seconds(3));
      EXPECT_EQ(bench.sent().find(":FETC:VOLT?") != std::string::npos, on);
      EXPECT_EQ(bench.text("txtVoltage(0)"), "0.5");
      EXPECT_TRUE(bench.switchesSend());
    }
    EXPECT_GT(changes, 2) << "the box and its timer are told of";
  }
}

TEST_P(ThrowingHost, fromItsInformationBoxLeavesTheComponentUsable) {
  int thrown = 0;
  for (const Act& act : support::allActs()) {
    PanelBench bench;
    start(bench);
    bench.instrument.on(":FETC:POW?", support::silence());
    bench.onBox = [] { throw HostsError(); };
    thrown += throwsThrough(act, bench) ? 1 : 0;
    bench.onBox = nullptr;
    SCOPED_TRACE(act.name);
    expectSound(bench);
  }
  EXPECT_GT(thrown, 10);
}

TEST(ThrowingTick, doesNotStopItsTimer) {
  PanelBench bench;
  bench.connect();
  bench.zan().AutoQuery(true);
  int passes = 0;
  auto watching = bench.loop.observePasses([&] {
    if (++passes == 3) {  // the first is the loop's, the next ones those of a query
      throw HostsError();
    }
  });
  EXPECT_THROW(bench.run(std::chrono::seconds(1)), HostsError);
  watching.end();
  (void)bench.sent();
  bench.run(std::chrono::seconds(1));
  EXPECT_GE(bench.sent().size(), 40U);
}

}  // namespace
}  // namespace lumodevice
