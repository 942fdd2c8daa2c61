#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "tests/support/panel_bench.hpp"
#include "tests/support/waking_loop.hpp"

namespace lumodevice {
namespace {

using namespace std::chrono_literals;
using support::Over;
using support::PanelBench;

/// What goes over the link in ten minutes of auto query on a loop, moved on by `run`.
template <typename Loop>
std::string tenMinutes(Over link, Loop& loop, auto run) {
  PanelBench bench({.loop = &loop});
  bench.connect(link);
  bench.click("chkAutoQuery");
  (void)bench.journal();
  run(loop.now() + 10min);
  return bench.journal();
}

class WakingHost : public testing::TestWithParam<Over> {};

INSTANTIATE_TEST_SUITE_P(Links, WakingHost, testing::ValuesIn(support::kLinks));

TEST_P(WakingHost, needsNoPollingToSendWhatALookingOneSends) {
  toolkit::VirtualLoop looking;
  const std::string looked =
      tenMinutes(GetParam(), looking, [&](auto end) { looking.runFor(end - looking.now()); });
  support::WakingLoop waking;
  const std::string woken = tenMinutes(GetParam(), waking, [&](auto end) { waking.runUntil(end); });
  EXPECT_GT(looked.size(), 50000U);
  EXPECT_TRUE(woken == looked);
}

TEST_P(WakingHost, ticksTheAutoQueryWhileAnInformationBoxIsShown) {
  support::WakingLoop loop;
  PanelBench bench({.loop = &loop});
  bench.connect(GetParam());
  bench.click("chkAutoQuery");
  int queries = 0;
  bench.onBox = [&] {
    (void)bench.sent();
    loop.runUntil(loop.now() + 1s);
    const std::string sent = bench.sent();
    queries = static_cast<int>(std::ranges::count(sent, '\n'));
  };
  bench.set(0, "");  // which the panel complains of
  EXPECT_GE(queries, 4);
  EXPECT_LE(queries, 6);
}

}  // namespace
}  // namespace lumodevice
