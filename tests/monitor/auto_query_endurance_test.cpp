#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::monitor {
namespace {

using namespace std::chrono_literals;
using support::Over;
using support::PanelBench;

constexpr auto kRotation = std::to_array<std::string_view>(
    {":FETC:VOLT?\n", ":FETC:CURR?\n", ":FETC:POW?\n", ":LOAD?\n", ":SYST:ERR?\n"});

/// Counts the queries of a bench and how many of them were not those that the rotation wanted; each
/// is answered with its number.
class Watch {
 public:
  explicit Watch(PanelBench& bench) : bench_(bench) {
    for (const std::string_view query : kRotation) {
      bench_.instrument.on(std::string(query.substr(0, query.size() - 1)),
                           std::vector<support::Reply>());
    }
    bench_.instrument.otherwise = [this](std::string_view sent) {
      const auto position = static_cast<std::size_t>(queries_) % kRotation.size();
      outOfTurn_ += sent == kRotation[position] ? 0 : 1;
      ++queries_;
      const bool load = kRotation[position] == ":LOAD?\n";
      return support::answer(load ? "00\n" : "10" + std::to_string(queries_) + "\n");
    };
  }

  [[nodiscard]] int queries() const { return queries_; }
  [[nodiscard]] int outOfTurn() const { return outOfTurn_; }

  /// What a read-out shows: the number of the query that it was the answer of.
  [[nodiscard]] int shown(std::string_view readOut) const {
    return std::stoi(bench_.text(readOut).substr(2));
  }

 private:
  PanelBench& bench_;
  int queries_ = 0;
  int outOfTurn_ = 0;
};

class AutoQueryEndurance : public testing::TestWithParam<Over> {};

INSTANTIATE_TEST_SUITE_P(Links, AutoQueryEndurance, testing::ValuesIn(support::kLinks));

TEST_P(AutoQueryEndurance, anHourIsEighteenThousandQueriesInRotation) {
  toolkit::VirtualLoop loop;
  PanelBench bench({.loop = &loop, .logging = false});
  bench.connect(GetParam());
  Watch watch(bench);
  bench.click("chkAutoQuery");
  const auto begin = loop.now();
  for (int minute = 1; minute <= 60; ++minute) {
    loop.runFor(begin + std::chrono::minutes(minute) - loop.now());
    (void)bench.journal();
    // The last five queries of the minute; the poll shows the last reading well before its end.
    ASSERT_EQ(watch.queries(), 300 * minute);
    ASSERT_EQ(watch.shown("txtVoltage(0)"), 300 * minute - 4);
    ASSERT_EQ(watch.shown("txtCurrent(0)"), 300 * minute - 3);
    ASSERT_EQ(watch.shown("txtPower(0)"), 300 * minute - 2);
  }
  EXPECT_EQ(watch.queries(), 18000);
  EXPECT_EQ(watch.outOfTurn(), 0);
}

TEST(TwoComponents, onOneLoopAskIndependently) {
  toolkit::VirtualLoop loop;
  PanelBench first({.loop = &loop});
  PanelBench second({.loop = &loop});
  first.connect(Over::VisaLibrary);
  second.connect(Over::Serial);
  second.type("Text5", "500");
  second.press("Text5", toolkit::Key::Enter);
  Watch firstWatch(first);
  Watch secondWatch(second);
  first.click("chkAutoQuery");
  loop.runFor(1s);
  EXPECT_EQ(firstWatch.queries(), 5);
  EXPECT_EQ(secondWatch.queries(), 0);
  second.click("chkAutoQuery");
  loop.runFor(60s);
  EXPECT_EQ(firstWatch.queries(), 305);
  EXPECT_EQ(secondWatch.queries(), 120);
  first.click("chkAutoQuery");
  loop.runFor(60s);
  EXPECT_EQ(firstWatch.queries(), 305);
  EXPECT_EQ(secondWatch.queries(), 240);
  EXPECT_EQ(firstWatch.outOfTurn() + secondWatch.outOfTurn(), 0);
  EXPECT_EQ(firstWatch.shown("txtPower(0)"), 303);
  EXPECT_EQ(secondWatch.shown("txtPower(0)"), 238);
}

TEST(TwoComponents, onTwoLoopsDoNotShareTheirTime) {
  PanelBench first;
  PanelBench second;
  first.connect(Over::VisaCom);
  second.connect(Over::VisaLibrary);
  Watch firstWatch(first);
  Watch secondWatch(second);
  first.click("chkAutoQuery");
  second.click("chkAutoQuery");
  first.run(10s + 100ms);
  EXPECT_EQ(firstWatch.queries(), 50);
  EXPECT_EQ(secondWatch.queries(), 0);
  second.run(2s);
  EXPECT_EQ(firstWatch.queries(), 50);
  EXPECT_EQ(secondWatch.queries(), 10);
}

TEST(TwoComponents, outliveEachOther) {
  toolkit::VirtualLoop loop;
  PanelBench lasting({.loop = &loop});
  lasting.connect();
  Watch watch(lasting);
  {
    PanelBench passing({.loop = &loop});
    passing.connect(Over::Serial);
    passing.click("chkAutoQuery");
    loop.runFor(1s);
  }
  lasting.click("chkAutoQuery");
  loop.runFor(10s);
  EXPECT_EQ(watch.queries(), 50);
  EXPECT_EQ(watch.outOfTurn(), 0);
}

}  // namespace
}  // namespace lumodevice::monitor
