#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "tests/control/acts.hpp"
#include "tests/control/soundness.hpp"

namespace lumodevice {
namespace {

using support::Act;
using support::Over;
using support::PanelBench;

constexpr const char* kBoxes[] = {support::kEmptyBox, support::kNumberBox, support::kNoAnswerBox,
                                  "box Pleace Connect to Deivce first!\n",
                                  "box Please Click [Get Memory Preset File] first!\n"};

/// One act with another one in one of its event passes.
class Reentrancy : public testing::TestWithParam<std::tuple<Over, Exchanges>> {
 protected:
  Reentrancy() {
    for (const Act& act : acts) {
      trustworthy.push_back(staysTrueToItsWord(act));
    }
  }

  [[nodiscard]] static support::Bench::Setup setup() {
    return {.exchanges = std::get<Exchanges>(GetParam())};
  }

  static void start(PanelBench& bench) {
    support::plugEverywhere(bench);
    bench.connect(std::get<Over>(GetParam()));
  }

  /// How many passes the act has by itself.
  [[nodiscard]] int passes(const Act& act) const {
    PanelBench bench(setup());
    start(bench);
    int count = 0;
    const auto watching = bench.loop.observePasses([&count] { ++count; });
    act.run(bench);
    return count;
  }

  /// Some acts have the panel say that it is connected where no command arrives (another variant of
  /// VISA is chosen, the device is taken away): then a connect is what the operator has to do.
  [[nodiscard]] bool staysTrueToItsWord(const Act& act) const {
    if (act.name == "click optVisa1" || act.name == "click optVisa2") {
      return false;
    }
    PanelBench bench(setup());
    start(bench);
    act.run(bench);
    return support::keepsItsWord(bench);
  }

  void expectSound(std::size_t outer, std::size_t inner, int pass) {
    PanelBench bench(setup());
    start(bench);
    auto watching = bench.loop.observePasses([&, left = pass]() mutable {
      if (--left == 0) {
        acts[inner].run(bench);
      }
    });
    SCOPED_TRACE(acts[inner].name + " in pass " + std::to_string(pass) + " of " + acts[outer].name);
    EXPECT_NO_THROW(acts[outer].run(bench));
    watching.end();
    expectKnownBoxes(bench);
    support::expectConsistent(bench);
    if (trustworthy[outer] && trustworthy[inner]) {
      EXPECT_TRUE(support::keepsItsWord(bench));
    }
    support::expectUsable(bench);
    ++runs;
  }

  static void expectKnownBoxes(PanelBench& bench) {
    std::string boxes = bench.journal({"box "});
    for (const std::string_view known : kBoxes) {
      for (auto at = boxes.find(known); at != std::string::npos; at = boxes.find(known)) {
        boxes.erase(at, known.size());
      }
    }
    EXPECT_EQ(boxes, "");
  }

  const std::vector<Act> acts = support::allActs();
  std::vector<bool> trustworthy;
  int runs = 0;
};

INSTANTIATE_TEST_SUITE_P(Links, Reentrancy,
                         testing::Combine(testing::ValuesIn(support::kLinks),
                                          testing::Values(Exchanges::Interleaved,
                                                          Exchanges::InTurn)));

TEST_P(Reentrancy, whatMovesTheLinkOrTheChannelMayRunInAnyPassOfItsLike) {
  constexpr int kMostPasses = 90;
  for (std::size_t outer = 0; outer < acts.size(); ++outer) {
    const int count = acts[outer].moves ? std::min(passes(acts[outer]), kMostPasses) : 0;
    for (int pass = 1; pass <= count; pass += 1 + pass / 3) {
      for (std::size_t inner = 0; inner < acts.size(); ++inner) {
        if (acts[inner].moves) {
          expectSound(outer, inner, pass);
        }
      }
    }
  }
  EXPECT_GT(runs, 500);
}

TEST_P(Reentrancy, anyActMayRunInAnyPassOfAnyOther) {
  constexpr int kSample = 1000;
  std::mt19937 random(20310307);
  std::vector<int> counts;
  for (const Act& act : acts) {
    counts.push_back(passes(act));
  }
  const auto below = [&](std::size_t count) { return random() % count; };
  while (runs < kSample) {
    const std::size_t outer = below(acts.size());
    if (counts[outer] > 0) {
      expectSound(outer, below(acts.size()),
                  1 + static_cast<int>(below(static_cast<std::size_t>(counts[outer]))));
    }
  }
}

}  // namespace
}  // namespace lumodevice
