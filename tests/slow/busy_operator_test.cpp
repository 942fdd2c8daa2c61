#include <chrono>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "tests/slow/operations.hpp"
#include "tests/slow/read_outs.hpp"

namespace lumodevice::slow {
namespace {

using namespace std::chrono_literals;
using support::Over;

/// An operator who follows from the seed and does not care that the auto query runs, or that
/// something else waits for its answer.
class BusyOperator {
 public:
  BusyOperator(Over link, std::uint32_t seed)
      : random_(seed), bench_(link, Exchanges::InTurn), readOuts_(bench_) {}

  void run(std::chrono::hours span) {
    const auto end = bench_.loop.now() + span;
    while (bench_.loop.now() < end && !testing::Test::HasFailure()) {
      bench_.zan().AutoQuery(true);
      act();
      bench_.loop.runFor(std::chrono::milliseconds(below(5000)));
    }
    EXPECT_EQ(readOuts_.wrong, 0);
    EXPECT_GT(readOuts_.all, 200);
    EXPECT_GT(queries_, 50);
    EXPECT_GT(interruptions_, 20);
    // The last connect may have found nobody: an identity is not waited for as long as some take.
    bench_.faults().clear();
    bench_.connect();
    EXPECT_TRUE(bench_.zan().isConnected());
  }

 private:
  void act() {
    switch (below(10)) {
      case 0:
        changeLatency();
        break;
      case 1:
        bench_.connect();
        break;
      case 2:
        bench_.search();
        break;
      case 3:
        operations()[below(operations().size())].run(bench_);
        break;
      default:
        send();
        break;
    }
  }

  /// In one of two hundred event passes, whatever waits there, but not in acts three deep.
  void interrupt() {
    if (depth_ < 3 && below(200) == 0) {
      ++interruptions_;
      send();
    }
  }

  void send() {
    constexpr const char* kQueries[] = {":FETC:VOLT?", ":FETC:CURR?", ":FETC:POW?", "*IDN?",
                                        ":SYST:ERR?",  ":LOAD ON",    ":LOAD OFF"};
    const std::string query = kQueries[below(std::size(kQueries))];
    const int before = bench_.answers();
    ++depth_;
    const std::string answer = bench_.ask(query);
    --depth_;
    ++queries_;
    EXPECT_TRUE(answer.empty() || bench_.belongsTo(answer, query, before))
        << query << " -> " << answer;
  }

  void changeLatency() {
    constexpr const char* kLatencies[] = {"0", "50", "60-600", "200-1600", "100-3000"};
    bench_.faults().clear();
    bench_.faults().addLatency(kLatencies[below(std::size(kLatencies))]);
  }

  std::size_t below(std::size_t count) { return random_() % count; }

  std::mt19937 random_;
  SlowBench bench_;
  ReadOutWatch readOuts_;
  int depth_ = 0;
  int queries_ = 0;
  int interruptions_ = 0;
  toolkit::Subscription passes_ = bench_.loop.observePasses([this] { interrupt(); });
};

class BusyOperatorOver : public testing::TestWithParam<Over> {};
INSTANTIATE_TEST_SUITE_P(EveryLink, BusyOperatorOver, testing::ValuesIn(support::kLinks));

TEST_P(BusyOperatorOver, everyValueBelongsToItsQuery) {
  BusyOperator busy(GetParam(), 20310307);
  busy.run(1h);
}

}  // namespace
}  // namespace lumodevice::slow
