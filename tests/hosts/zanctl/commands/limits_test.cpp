#include "hosts/zanctl/commands/limits.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zanctl {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using testing::Eq;
using testing::HasSubstr;
using testing::Optional;

TEST(Limits, haveTheUnitsOfTheirKind) {
  EXPECT_THAT(parseVolts("10.5V"), Optional(10.5));
  EXPECT_THAT(parseVolts("10.5"), Optional(10.5));
  EXPECT_THAT(parseVolts("500mV"), Optional(0.5));
  EXPECT_THAT(parseSeconds("90"), Optional(90));
  EXPECT_THAT(parseSeconds("15min"), Optional(900));
  EXPECT_THAT(parseSeconds("1h30min"), Optional(5400));
  EXPECT_THAT(parseSeconds("2h"), Optional(7200));
  EXPECT_THAT(parseWattHours("50Wh"), Optional(50));
  EXPECT_THAT(parseWattHours("2kWh"), Optional(2000));
}

TEST(Limits, takeNothingElse) {
  for (const char* text :
       {"", "V", "10.5A", "-3V", "10,5V", "0V", "nan", "inf", "1e3V", "3 V", "3V4"}) {
    EXPECT_THAT(parseVolts(text), Eq(std::nullopt)) << text;
  }
  EXPECT_THAT(parseSeconds("2h30"), Eq(std::nullopt));
  EXPECT_THAT(parseWattHours("5W"), Eq(std::nullopt));
}

Measured loaded(double volts, double watts = 0) {
  return {.volts = volts, .watts = watts, .on = true};
}

TEST(LimitWatch, endsBelowAVoltageWhileTheLoadIsOn) {
  LimitWatch watch({.volts = 10.5, .seconds = {}, .wattHours = {}}, seconds(0));
  EXPECT_EQ(watch.take("CH1", loaded(10.5), seconds(1)), std::nullopt);
  EXPECT_EQ(watch.take("CH1", {.volts = 3, .watts = 0, .on = false}, seconds(2)), std::nullopt);
  EXPECT_THAT(watch.take("CH1", loaded(10.4999), seconds(3)).value_or(""), HasSubstr("10.4999 V"));
}

TEST(LimitWatch, endsWhereAVoltageIsNotKnownThreeTimes) {
  LimitWatch watch({.volts = 10.5, .seconds = {}, .wattHours = {}}, seconds(0));
  const Measured unknown{.volts = {}, .watts = 5, .on = true};
  EXPECT_EQ(watch.take("CH1", unknown, seconds(1)), std::nullopt);
  EXPECT_EQ(watch.take("CH1", unknown, seconds(2)), std::nullopt);
  EXPECT_EQ(watch.take("CH1", loaded(12), seconds(3)), std::nullopt);
  EXPECT_EQ(watch.take("CH1", unknown, seconds(4)), std::nullopt);
  EXPECT_EQ(watch.take("CH1", unknown, seconds(5)), std::nullopt);
  EXPECT_THAT(watch.take("CH1", unknown, seconds(6)).value_or(""), HasSubstr("not known"));
}

TEST(LimitWatch, endsWithTheTimeAndWithTheEnergyOfAllChannels) {
  LimitWatch watch({.volts = {}, .seconds = 7200, .wattHours = 30}, seconds(0));
  EXPECT_EQ(watch.take("CH1", loaded(12, 10), hours(0)), std::nullopt);
  EXPECT_EQ(watch.take("CH2", loaded(12, 20), hours(0)), std::nullopt);
  EXPECT_EQ(watch.take("CH1", loaded(12, 10), hours(1)), std::nullopt);
  EXPECT_THAT(watch.take("CH2", loaded(12, 20), hours(1)).value_or(""), HasSubstr("30 Wh"));
  EXPECT_EQ(watch.expired(seconds(7199)), std::nullopt);
  EXPECT_THAT(watch.expired(hours(2)).value_or(""), HasSubstr("7200 s"));
}

}  // namespace
}  // namespace zanctl
