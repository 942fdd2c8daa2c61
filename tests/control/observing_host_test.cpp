#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/control/acts.hpp"
#include "tests/control/soundness.hpp"

namespace lumodevice {
namespace {

using support::Act;
using support::Over;
using support::PanelBench;

/// Does the same at the event of any control.
std::vector<toolkit::Subscription> observeAll(toolkit::Surface& surface,
                                              const std::function<void()>& act) {
  std::vector<toolkit::Subscription> all;
  for (const auto& control : surface.controls()) {
    const auto observe = [&]<typename ControlType>(ControlType* typed) {
      if (typed != nullptr) {
        all.push_back(typed->click.observe(act));
      }
    };
    observe(dynamic_cast<toolkit::CommandButton*>(control.get()));
    observe(dynamic_cast<toolkit::Label*>(control.get()));
    observe(dynamic_cast<toolkit::CheckBox*>(control.get()));
    observe(dynamic_cast<toolkit::OptionButton*>(control.get()));
    observe(dynamic_cast<toolkit::ListControl*>(control.get()));
    observe(dynamic_cast<toolkit::Pictured*>(control.get()));
    if (auto* text = dynamic_cast<toolkit::TextBox*>(control.get())) {
      all.push_back(text->change.observe(act));
    }
  }
  return all;
}

struct HostsError : std::runtime_error {
  HostsError() : std::runtime_error("of the host's own") {}
};

/// A host that observes every event of the panel and does something at the n-th.
class ObservingHost : public testing::TestWithParam<Over> {
 protected:
  void start(PanelBench& bench) const {
    support::plugEverywhere(bench);
    bench.connect(GetParam());
  }
};

INSTANTIATE_TEST_SUITE_P(Links, ObservingHost, testing::ValuesIn(support::kLinks));

TEST_P(ObservingHost, changesNothingByLookingOn) {
  for (const Act& act : support::allActs()) {
    PanelBench alone;
    PanelBench observed;
    start(alone);
    start(observed);
    int events = 0;
    const auto watching = observeAll(observed.zan().surface(), [&] { ++events; });
    act.run(alone);
    act.run(observed);
    EXPECT_EQ(observed.journal(), alone.journal()) << act.name;
  }
}

TEST_P(ObservingHost, thatThrowsLeavesTheComponentUsable) {
  int thrown = 0;
  for (const Act& act : support::allActs()) {
    for (int event = 1;; event += 1 + event / 16) {
      PanelBench bench;
      start(bench);
      int left = event;
      auto watching = observeAll(bench.zan().surface(), [&left] {
        if (--left == 0) {
          throw HostsError();
        }
      });
      bool threw = false;
      try {
        act.run(bench);
      } catch (const HostsError&) {
        threw = true;
      }
      watching.clear();
      SCOPED_TRACE(act.name + ", event " + std::to_string(event));
      support::expectConsistent(bench);
      support::expectUsable(bench);
      if (!threw) {
        break;
      }
      ++thrown;
    }
  }
  EXPECT_GT(thrown, 100);
}

TEST_P(ObservingHost, mayEndTheComponentAfterWhichNothingIsSentOrShown) {
  constexpr int kMostEvents = 60;
  int runs = 0;
  for (const Act& act : support::allActs()) {
    bool ended = act.single;
    for (int event = 1; ended && event <= kMostEvents; ++event) {
      PanelBench bench;
      start(bench);
      ended = false;
      int left = event;
      const auto watching = observeAll(bench.zan().surface(), [&] {
        if (--left == 0) {
          bench.destroy();
          (void)bench.journal();
          ended = true;
        }
      });
      act.run(bench);
      if (ended) {
        EXPECT_EQ(bench.journal(), "") << act.name << ", event " << event;
        ++runs;
      }
    }
  }
  EXPECT_GT(runs, 200);
}

}  // namespace
}  // namespace lumodevice
