#include "hosts/zanpanel/discharge/stop_conditions.hpp"

#include <gtest/gtest.h>

namespace zanpanel {
namespace {

using namespace std::chrono_literals;

TEST(StopConditions, areMetByWhatTheyName) {
  const Progress progress{.volts = 10.4, .elapsed = 2h, .ampereHours = 1.5, .wattHours = 18.0};
  EXPECT_EQ(reached({.voltsBelow = 10.5}, progress),
            "the voltage fell to 10.4000 V, below 10.500 V");
  EXPECT_EQ(reached({.after = 2h}, progress), "the time of 2:00:00 was over");
  EXPECT_EQ(reached({.ampereHours = 1.5}, progress), "the charge reached 1.5000 Ah");
  EXPECT_EQ(reached({.wattHours = 18.0}, progress), "the energy reached 18.0000 Wh");
}

TEST(StopConditions, areNotMetBefore) {
  const Progress progress{.volts = 10.4, .elapsed = 2h, .ampereHours = 1.5, .wattHours = 18.0};
  const StopConditions further{
      .voltsBelow = 10.4, .after = 2h + 1ms, .ampereHours = 1.51, .wattHours = 18.01};
  EXPECT_FALSE(reached(further, progress));
}

TEST(StopConditions, areNotMetByAVoltageThatHasNotComeYet) {
  EXPECT_FALSE(reached({.voltsBelow = 10.5}, Progress()));
}

TEST(ClockText, countsHoursOn) {
  EXPECT_EQ(clockText(61s), "0:01:01");
  EXPECT_EQ(clockText(100h), "100:00:00");
}

}  // namespace
}  // namespace zanpanel
