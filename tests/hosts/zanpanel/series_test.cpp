#include "hosts/zanpanel/readings/series.hpp"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace zanpanel {
namespace {

using namespace std::chrono_literals;

constexpr Moment kPeriod = 200ms;
constexpr std::size_t kColumns = 1000;

double highest(const std::vector<CurvePoint>& curve) {
  double value = -1e9;
  for (const CurvePoint& point : curve) {
    value = std::isnan(point.value) ? value : std::max(value, point.value);
  }
  return value;
}

TEST(Series, showsWhatWasPutInAsItIsWhileThereIsRoom) {
  Series series;
  series.add(1000ms, 1.5);
  series.add(1200ms, 2.5);
  const auto curve = series.curve(0ms, 5000ms, kColumns);
  ASSERT_EQ(curve.size(), 2U);
  EXPECT_EQ(curve[0].at, 1000ms);
  EXPECT_EQ(curve[0].value, 1.5);
  EXPECT_EQ(curve[1].at, 1200ms);
  EXPECT_EQ(curve[1].value, 2.5);
}

TEST(Series, losesNoSpikeOfADayOfFiveReadingsASecond) {
  constexpr int kDay = 24 * 3600 * 5;
  for (const int spike : {0, 3, 17, 1000, kDay / 2, kDay - 1}) {
    Series series;
    for (int i = 0; i < kDay; ++i) {
      series.add(kPeriod * i, i == spike ? 99.0 : 1.0);
    }
    const auto curve = series.curve(0ms, 24h, kColumns);
    EXPECT_EQ(highest(curve), 99.0) << spike;
    EXPECT_LE(curve.size(), 4 * kColumns + 8);
    EXPECT_EQ(series.first(), 0ms);
    EXPECT_EQ(series.last(), kPeriod * (kDay - 1));
  }
}

TEST(Series, showsTheYoungestAtOnceOnEveryScale) {
  Series series;
  for (int i = 0; i < 100000; ++i) {
    series.add(kPeriod * i, 1.0);
  }
  series.add(kPeriod * 100000, 7.0);
  EXPECT_EQ(highest(series.curve(0ms, 24h, kColumns)), 7.0);
  EXPECT_EQ(highest(series.curve(kPeriod * 99990, kPeriod * 100010, kColumns)), 7.0);
}

TEST(Series, keepsABoundedPastAndSaysWhereItBegins) {
  Series series;
  constexpr int kWeek = 7 * 24 * 3600 * 5;
  for (int i = 0; i < kWeek; ++i) {
    series.add(kPeriod * i, 1.0);
  }
  EXPECT_GT(series.first(), 24h);
  EXPECT_GE(series.last() - series.first(), 24h);
  EXPECT_LE(series.curve(0ms, 7 * 24h, kColumns).size(), 4 * kColumns + 8);
}

TEST(Series, partsTheLineWhereItWasParted) {
  Series series;
  series.add(0ms, 1.0);
  series.part();
  series.add(10s, 2.0);
  series.add(11s, 2.0);
  const auto curve = series.curve(0ms, 20s, kColumns);
  ASSERT_EQ(curve.size(), 4U);
  EXPECT_TRUE(std::isnan(curve[1].value));
}

TEST(Series, staysPartedWhereManyReadingsAreOnePoint) {
  Series series;
  for (int i = 0; i < 20000; ++i) {
    if (i == 10003) {
      series.part();
    }
    series.add(kPeriod * i, 1.0);
  }
  const auto curve = series.curve(0ms, 24h, 20);
  EXPECT_EQ(std::ranges::count_if(curve, [](auto& point) { return std::isnan(point.value); }), 1);
}

TEST(Series, findsTheReadingNearestToAMoment) {
  Series series;
  EXPECT_FALSE(series.nearest(0ms));
  for (int i = 0; i < 100; ++i) {
    series.add(1s * i, i);
  }
  EXPECT_EQ(series.nearest(41400ms)->value, 41);
  EXPECT_EQ(series.nearest(41600ms)->value, 42);
  EXPECT_EQ(series.nearest(1h)->value, 99);
}

TEST(Series, goesOnToTheEdgesOfWhatIsLookedAt) {
  Series series;
  for (int i = 0; i < 100; ++i) {
    series.add(1s * i, i);
  }
  const auto curve = series.curve(10500ms, 12500ms, kColumns);
  ASSERT_EQ(curve.size(), 4U);
  EXPECT_EQ(curve.front().value, 10);
  EXPECT_EQ(curve.back().value, 13);
}

}  // namespace
}  // namespace zanpanel
