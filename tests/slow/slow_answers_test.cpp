#include <chrono>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/slow/manual_table.hpp"
#include "tests/slow/read_outs.hpp"

namespace lumodevice::slow {
namespace {

using support::Over;

struct Latency {
  const char* name;
  const char* text;
};
constexpr Latency kLatencies[] = {{"60 to 600 ms", "60-600,seed=7"},
                                  {"200 to 1600 ms", "200-1600,seed=7"}};

struct Count {
  int wrong = 0;
  int missing = 0;
  int all = 0;
};

/// A reading shown by a query that is a reading of something else, or an older one.
Count plainQueries(SlowBench& bench) {
  constexpr int kQueries = 120;
  Count count;
  for (int i = 0; i < kQueries; ++i) {
    const char* const query = kReadOuts.at(static_cast<std::size_t>(i) % kReadOuts.size()).query;
    const bool own = bench.getsItsOwnAnswer(query);
    const bool missing = bench.zan().ResultStr().empty();
    ++count.all;
    count.missing += missing ? 1 : 0;
    count.wrong += own || missing ? 0 : 1;
  }
  return count;
}

Count autoQuery(SlowBench& bench) {
  constexpr int kReadings = 120;
  const ReadOutWatch readOuts(bench);
  bench.zan().AutoQuery(true);
  while (readOuts.all < kReadings) {
    bench.loop.runFor(std::chrono::milliseconds(100));
  }
  bench.zan().AutoQuery(false);
  return {.wrong = readOuts.wrong, .missing = 0, .all = readOuts.all};
}

struct Measure {
  const char* name;
  Count (*measure)(SlowBench& bench);
};
constexpr Measure kMeasures[] = {{"commands", plainQueries}, {"the auto query", autoQuery}};

std::string cell(const Count& count) {
  return std::to_string(count.wrong) + " of " + std::to_string(count.all) +
         (count.missing == 0 ? "" : ", " + std::to_string(count.missing) + " without an answer");
}

TEST(SlowAnswers, inTurnNoneIsShownAsAnothersAndTheManualHasTheCounts) {
  std::ostringstream table;
  table << "| Answers after | Wrong values of | Interleaved | In turn |\n|---|---|---|---|\n";
  for (const Latency& latency : kLatencies) {
    for (const auto& [name, measure] : kMeasures) {
      std::vector<Count> counts;
      for (const Exchanges exchanges : {Exchanges::Interleaved, Exchanges::InTurn}) {
        SlowBench bench(Over::Serial, exchanges);
        bench.faults().addLatency(latency.text);
        counts.push_back(measure(bench));
      }
      EXPECT_EQ(counts[1].wrong, 0) << name << ", " << latency.name;
      table << "| " << latency.name << " | " << name << " | " << cell(counts[0]) << " | "
            << cell(counts[1]) << " |\n";
    }
  }
  EXPECT_TRUE(manualHas("slow answers", table.str())) << table.str();
}

}  // namespace
}  // namespace lumodevice::slow
