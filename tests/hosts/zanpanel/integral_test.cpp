#include "hosts/zanpanel/readings/integral.hpp"

#include <gtest/gtest.h>

namespace zanpanel {
namespace {

using namespace std::chrono_literals;

constexpr Moment kLongest = 3s;

TEST(Counters, countByTheTimesOfTheReadings) {
  Counters counters(kLongest);
  counters.load(true);
  // An hour at 2 A and 24 W, in steps that are not alike.
  for (Moment at = 0ms; at <= 1h; at += at.count() % 400 == 0 ? 600ms : 1000ms) {
    counters.current(at, 2.0);
    counters.power(at, 24.0);
  }
  EXPECT_NEAR(counters.ampereHours(), 2.0, 0.001);
  EXPECT_NEAR(counters.wattHours(), 24.0, 0.012);
}

TEST(Counters, takeTheMeanBetweenTwoReadings) {
  Counters counters(kLongest);
  counters.load(true);
  counters.current(0s, 0.0);
  counters.current(2s, 36.0);
  EXPECT_DOUBLE_EQ(counters.ampereHours(), 0.01);
}

TEST(Counters, standStillUntilTheInstrumentSaysThatTheLoadIsOn) {
  Counters counters(kLongest);
  counters.current(0s, 10.0);
  counters.current(1s, 10.0);
  EXPECT_EQ(counters.ampereHours(), 0.0);
}

TEST(Counters, standStillWhileTheLoadIsOff) {
  Counters counters(kLongest);
  counters.load(true);
  counters.current(0s, 3600.0);
  counters.current(1s, 3600.0);
  counters.load(false);
  counters.current(2s, 3600.0);
  counters.current(3s, 3600.0);
  EXPECT_DOUBLE_EQ(counters.ampereHours(), 1.0);
  counters.load(true);
  counters.current(4s, 3600.0);
  EXPECT_DOUBLE_EQ(counters.ampereHours(), 1.0);
  counters.current(5s, 3600.0);
  EXPECT_DOUBLE_EQ(counters.ampereHours(), 2.0);
}

TEST(Counters, countNothingOverASilence) {
  Counters counters(kLongest);
  counters.load(true);
  counters.current(0s, 3600.0);
  counters.current(10s, 3600.0);
  EXPECT_EQ(counters.ampereHours(), 0.0);
  counters.current(11s, 3600.0);
  EXPECT_DOUBLE_EQ(counters.ampereHours(), 1.0);
}

TEST(Counters, countNothingWhileTheLinkIsLost) {
  Counters counters(kLongest);
  counters.load(true);
  counters.current(0s, 3600.0);
  counters.pause();
  counters.current(1s, 3600.0);
  counters.current(2s, 3600.0);
  EXPECT_EQ(counters.ampereHours(), 0.0);
}

TEST(Counters, beginAnew) {
  Counters counters(kLongest);
  counters.load(true);
  counters.power(0s, 3600.0);
  counters.power(1s, 3600.0);
  counters.reset();
  EXPECT_EQ(counters.wattHours(), 0.0);
  counters.power(2s, 3600.0);
  EXPECT_EQ(counters.wattHours(), 0.0);
}

}  // namespace
}  // namespace zanpanel
