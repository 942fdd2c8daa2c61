#include "hosts/zanpanel/discharge/discharge.hpp"

#include <gtest/gtest.h>

#include "tests/hosts/zanpanel/simulated_load.hpp"

namespace zanpanel {
namespace {

using namespace std::chrono_literals;

/// A small battery on channel 3, discharged with 5 A.
class Discharging : public testing::Test {
 protected:
  Discharging() {
    bench.connect();
    bench.choose(2);
    bench.type("txtInput", 0, "5");
    bench.click("cmdSet", 0);
    bench.load.AutoQuery(true);
    bench.run(2s);
  }
  void run(std::chrono::seconds span) {
    for (auto left = span; left.count() > 0; --left) {
      bench.run(1s);
      discharge.look();
    }
  }

  SimulatedLoad bench{{"3=12.6,0.02,1"}};
  Discharge discharge{bench.load, bench.monitor};
};

TEST_F(Discharging, endsAtItsVoltageWithTheLoadConfirmedOff) {
  discharge.start({.voltsBelow = 11.5});
  run(5s);
  ASSERT_EQ(discharge.state(), Discharge::State::Running);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
  run(80s);
  EXPECT_EQ(discharge.state(), Discharge::State::Off);
  EXPECT_EQ(bench.ask(":LOAD?"), "0");
  EXPECT_NE(discharge.outcome().find("below 11.500 V"), std::string::npos) << discharge.outcome();
  const auto charge = discharge.progress().ampereHours;
  EXPECT_GT(charge, 0.005);
  const auto elapsed = discharge.progress().elapsed;
  run(30s);
  EXPECT_EQ(discharge.progress().ampereHours, charge);
  EXPECT_EQ(discharge.progress().elapsed, elapsed);
}

TEST_F(Discharging, endsAfterItsChargeItsEnergyOrItsTime) {
  for (const StopConditions& conditions :
       {StopConditions{.ampereHours = 0.01}, StopConditions{.wattHours = 0.1},
        StopConditions{.after = 7s}}) {
    discharge.start(conditions);
    run(30s);
    EXPECT_EQ(discharge.state(), Discharge::State::Off);
    EXPECT_EQ(bench.ask(":LOAD?"), "0");
  }
  EXPECT_NEAR(std::chrono::duration<double>(discharge.progress().elapsed).count(), 7, 1.5);
}

TEST_F(Discharging, neverBeginsWithoutACondition) {
  EXPECT_TRUE(discharge.hindrance({}));
  discharge.start({});
  EXPECT_EQ(discharge.state(), Discharge::State::Idle);
  EXPECT_EQ(bench.ask(":LOAD?"), "0");
}

TEST_F(Discharging, neverBeginsBelowItsVoltage) {
  discharge.start({.voltsBelow = 13});
  EXPECT_EQ(discharge.state(), Discharge::State::Idle);
  EXPECT_EQ(bench.ask(":LOAD?"), "0");
}

TEST_F(Discharging, endsWhenTheLoadWentOffByItself) {
  discharge.start({.voltsBelow = 1});
  run(4s);
  bench.type("txtInput", 26, "60");
  bench.click("chkUVP");
  run(6s);
  EXPECT_EQ(discharge.state(), Discharge::State::Off);
  EXPECT_NE(discharge.outcome().find("by itself"), std::string::npos) << discharge.outcome();
}

TEST_F(Discharging, endsWhenTheOperatorSwitchesTheLoadOff) {
  discharge.start({.voltsBelow = 1});
  run(4s);
  bench.click("chkLoad");
  run(4s);
  EXPECT_EQ(discharge.state(), Discharge::State::Off);
  EXPECT_NE(discharge.outcome().find("was switched off"), std::string::npos) << discharge.outcome();
}

TEST_F(Discharging, saysThatNobodyWatchesWhileTheLinkIsLostAndGoesOn) {
  discharge.start({.after = 10min});
  run(4s);
  bench.cable.unplugged = true;
  run(15s);
  EXPECT_EQ(discharge.state(), Discharge::State::Unwatched);
  bench.cable.unplugged = false;
  run(10s);
  EXPECT_EQ(discharge.state(), Discharge::State::Running);
}

TEST_F(Discharging, isUnsureWhenTheInstrumentDoesNotConfirm) {
  discharge.start({.after = 10min});
  run(4s);
  bench.cable.unplugged = true;
  discharge.stop("stopped by hand");
  EXPECT_EQ(discharge.state(), Discharge::State::Unsure);
  EXPECT_NE(discharge.outcome().find("MAY STILL BE ON"), std::string::npos);
  bench.cable.unplugged = false;
  bench.run(10s);
  discharge.confirmAgain();
  EXPECT_EQ(discharge.state(), Discharge::State::Off);
  EXPECT_EQ(bench.ask(":LOAD?"), "0");
}

TEST_F(Discharging, switchesOffItsOwnChannelWhateverChannelIsChosenMeanwhile) {
  discharge.start({.after = 10min});
  run(4s);
  bench.choose(3);
  run(3s);
  EXPECT_EQ(discharge.state(), Discharge::State::Unwatched);
  discharge.stop("stopped by hand");
  EXPECT_EQ(discharge.state(), Discharge::State::Off);
  bench.load.SendCmd(":CHAN 3");
  EXPECT_EQ(bench.ask(":LOAD?"), "0");
}

}  // namespace
}  // namespace zanpanel
