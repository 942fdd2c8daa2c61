#include "simulator/load/source.hpp"

#include <chrono>
#include <cmath>
#include <gtest/gtest.h>

using namespace std::chrono_literals;
using zansim::Duration;
using zansim::Source;

TEST(Source, fallsInProportionToTheChargeDrawnAndNotBelowNothing) {
  const Source battery{12, 0.1, 2};
  EXPECT_DOUBLE_EQ(battery.voltsAfter(0, 0s, 1), 12);
  EXPECT_DOUBLE_EQ(battery.voltsAfter(3600, 0s, 1), 6);
  EXPECT_DOUBLE_EQ(battery.voltsAfter(7200, 0s, 1), 0);
  EXPECT_DOUBLE_EQ(battery.voltsAfter(9000, 0s, 1), 0);
}

TEST(Source, aSupplyNeverRunsDown) {
  EXPECT_DOUBLE_EQ((Source{12, 0.1}.voltsAfter(1e9, 240h, 1)), 12);
}

TEST(Source, rippleAndDriftStayWithinTheirBoundsAndMove) {
  const Source source{12, 0.1, 0, 0.05, 0.2};
  double least = 12;
  double most = 12;
  for (Duration at{0}; at < 1h; at += 977ms) {
    const double volts = source.voltsAfter(0, at, 3);
    ASSERT_NEAR(volts, 12, 0.25);
    least = std::min(least, volts);
    most = std::max(most, volts);
  }
  EXPECT_GT(most - least, 0.25);
}

TEST(Source, rippleAndDriftFollowFromTheSeed) {
  const Source source{12, 0.1, 0, 0.05, 0.2};
  int equal = 0;
  for (Duration at{0}; at < 10s; at += 10ms) {
    EXPECT_EQ(source.voltsAfter(0, at, 3), source.voltsAfter(0, at, 3));
    equal += source.voltsAfter(0, at, 3) == source.voltsAfter(0, at, 4) ? 1 : 0;
  }
  EXPECT_EQ(equal, 0);
}

TEST(Source, rippleHasNoJumps) {
  const Source source{12, 0.1, 0, 0.05, 0.2};
  for (Duration at{0}; at < 20ms; at += 1us) {
    ASSERT_NEAR(source.voltsAfter(0, at, 5), source.voltsAfter(0, at + 1us, 5), 0.001);
  }
}
