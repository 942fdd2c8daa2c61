// The course of a channel in time: slew rates, timers, the load-on voltage, batteries, Go/NoGo.

#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "tests/simulator/load_bench.hpp"

using namespace std::chrono_literals;
using zansim::Source;
using zansim::tests::LoadBench;

TEST(Channel, currentRisesAndFallsAtTheSlewRates) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":CURR:STAT:L1 10;RISE 0.5;FALL 0.25;:LOAD ON");
  EXPECT_EQ(bench.terminals().amps, 0);
  bench.pass(10us);
  EXPECT_NEAR(bench.terminals().amps, 5, 1e-9);
  bench.pass(9999ns);
  EXPECT_LT(bench.terminals().amps, 10);
  bench.pass(1ns);
  EXPECT_NEAR(bench.terminals().amps, 10, 1e-9);
  bench.send(":CURR:STAT:L1 4");
  EXPECT_NEAR(bench.terminals().amps, 10, 1e-9);
  bench.pass(12us);
  EXPECT_NEAR(bench.terminals().amps, 7, 1e-9);
  bench.pass(12us);
  EXPECT_NEAR(bench.terminals().amps, 4, 1e-9);
  bench.pass(1s);
  EXPECT_NEAR(bench.terminals().amps, 4, 1e-9);
}

TEST(Channel, resistanceSlewsItsCurrent) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":MODE CRL;:RES:L1 1.1;RISE 0.5;FALL 0.1;:LOAD ON");
  bench.pass(4us);
  EXPECT_NEAR(bench.terminals().amps, 2, 1e-9);
  bench.pass(1s);
  bench.send(":RES:L1 2.9");
  bench.pass(30us);
  EXPECT_NEAR(bench.terminals().amps, 7, 1e-9);
}

TEST(Channel, theResponseOfConstantVoltageIsSlowOrFast) {
  for (const auto& [response, amps] : {std::pair{"LOW", 0.1}, {"FAST", 10.0}}) {
    LoadBench bench("2030", {12, 0.1});
    bench.send(":MODE CV;:VOLT:L1 11;MODE " + std::string(response) + ";:LOAD ON");
    bench.pass(5us);
    EXPECT_NEAR(bench.terminals().amps, amps, 1e-9) << response;
  }
}

TEST(Channel, dynamicTimersHoldToTheNanosecond) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":MODE CCDH;:CURR:DYN:L1 4;L2 2;RISE 1;FALL 2;T1 0.025;T2 0.05;:LOAD ON");
  bench.pass(25us);
  EXPECT_NEAR(bench.terminals().amps, 4, 1e-9);
  bench.pass(500ns);
  EXPECT_NEAR(bench.terminals().amps, 3, 1e-9);
  bench.pass(500ns);
  EXPECT_NEAR(bench.terminals().amps, 2, 1e-9);
  bench.pass(49us);
  EXPECT_NEAR(bench.terminals().amps, 2, 1e-9);
  bench.pass(1us);
  EXPECT_NEAR(bench.terminals().amps, 3, 1e-9);
  bench.pass(75us * 1'000'000);
  EXPECT_NEAR(bench.terminals().amps, 3, 1e-9);
}

TEST(Channel, aPeriodStartsAnewWithTheLoadTheModeAndTheTimers) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":MODE CCDH;:CURR:DYN:L1 4;L2 2;T1 10;T2 10;:LOAD ON");
  bench.pass(15ms);
  EXPECT_NEAR(bench.terminals().amps, 2, 1e-9);
  bench.send(":MODE CCDH;:LOAD ON;:CURR:DYN:L1 5");  // none of these starts it anew
  bench.pass(4ms);
  EXPECT_NEAR(bench.terminals().amps, 2, 1e-9);
  bench.send(":CURR:DYN:T2 20");
  bench.pass(5ms);
  EXPECT_NEAR(bench.terminals().amps, 5, 1e-9);
  bench.pass(10ms);
  EXPECT_NEAR(bench.terminals().amps, 2, 1e-9);
  bench.send(":LOAD OFF;:LOAD ON");
  bench.pass(5ms);
  EXPECT_NEAR(bench.terminals().amps, 5, 1e-9);
}

TEST(Channel, offIsOffAtOnce) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":CURR:STAT:L1 10;:LOAD ON");
  bench.pass(1s);
  bench.send(":LOAD OFF");
  EXPECT_EQ(bench.terminals().amps, 0);
  EXPECT_NEAR(bench.terminals().volts, 12, 1e-12);
  EXPECT_EQ(bench.ask(":LOAD?;:LOAD:STATE?"), "0;0");
  bench.pass(1h);
  EXPECT_EQ(bench.terminals().amps, 0);
}

TEST(Channel, belowTheLoadOnVoltageNothingFlows) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":CURR:STAT:L1 10;:CONF:VOLT:ON 12.5;:LOAD ON");
  bench.pass(1s);
  EXPECT_EQ(bench.terminals().amps, 0);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
  bench.channel().connect({13, 0.01});
  bench.pass(1s);
  EXPECT_NEAR(bench.terminals().amps, 10, 1e-9);
}

TEST(Channel, withoutTheLatchTheLoadGivesWayAtTheLoadOnVoltage) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":CURR:STAT:L1 10;:CONF:VOLT:ON 11.5;:LOAD ON");
  bench.pass(1s);
  EXPECT_NEAR(bench.terminals().volts, 11.5, 1e-9);
  EXPECT_NEAR(bench.terminals().amps, 5, 1e-9);
}

TEST(Channel, withTheLatchTheLoadConductsOnOnceItHas) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":CURR:STAT:L1 10;:CONF:VOLT:ON 11.5;LAT ON;:LOAD ON");
  bench.pass(1s);
  EXPECT_NEAR(bench.terminals().volts, 11, 1e-9);
  bench.channel().connect({8, 0.1});
  bench.pass(1s);
  EXPECT_NEAR(bench.terminals().amps, 10, 1e-9);
  bench.send(":LOAD OFF;:LOAD ON");
  bench.pass(1s);
  EXPECT_EQ(bench.terminals().amps, 0);
}

TEST(Channel, aConstantCurrentDischargeIsExact) {
  LoadBench bench("2030", {12.6, 0.05, 5});
  bench.send(":CURR:STAT:L1 10;:LOAD ON");
  bench.pass(360s);  // 1 Ah of 5, but for what the rise of 5 us leaves out
  EXPECT_NEAR(bench.channel().drawn(), 3600, 1e-3);
  EXPECT_NEAR(bench.terminals().volts, 12.6 * 0.8 - 0.5, 1e-6);
}

TEST(Channel, aConstantVoltageDischargeDecaysExponentially) {
  const Source battery{12.6, 0.5, 0.1};
  LoadBench bench("2030", battery);
  bench.send(":MODE CV;:VOLT:L1 11;MODE FAST;:LOAD ON");
  const double tau = battery.ohms / battery.voltsPerCoulomb();
  for (int second = 1; second <= 60; ++second) {
    bench.pass(1s);
    // Steps of 100 ms are first-order: within 100 ms of the exact course, and without drawing more.
    const double exact = 1.6 / 0.5 * std::exp(-second / tau);
    EXPECT_NEAR(bench.terminals().amps, exact, 0.1 / tau * 3.2) << second;
  }
  bench.pass(24h);
  EXPECT_NEAR(bench.terminals().amps, 0, 1e-6);
  EXPECT_NEAR(bench.terminals().volts, 11, 1e-6);
}

TEST(Channel, drawsTheSameWhetherItIsAskedOftenOrSeldom) {
  const Source battery{12.6, 0.05, 0.5};
  for (const char* const mode : {"CCH", "CV", "CRL", "CCDH", "CRDL"}) {
    const auto drawn = [&](zansim::Duration every) {
      LoadBench bench("2030", battery);
      bench.send(":CURR:STAT:L1 3;:VOLT:L1 12;:CURR:DYN:L1 4;L2 1;T1 3;T2 5");
      bench.send(":MODE " + std::string(mode));
      bench.send(":LOAD ON;:RES:DYN:LOW:L1 4;L2 8");
      for (zansim::Duration at{0}; at < 60s; at += every) {
        bench.pass(every);
        bench.channel();
      }
      return bench.channel().drawn();
    };
    EXPECT_NEAR(drawn(10ms), drawn(60s), 0.005 * drawn(60s)) << mode;
  }
}

TEST(Channel, daysWithoutAQuestionAreReckonedAtTheNext) {
  LoadBench bench("2030", {12.6, 0.05, 5, 0.002, 0.006});
  bench.send(":MODE CCDH;:CURR:DYN:L1 5;L2 1;T1 0.025;T2 0.025;:LOAD ON");
  bench.pass(24h * 365);
  EXPECT_LE(bench.channel().drawn(), 5 * 3600 * 1.001);
  EXPECT_LT(bench.terminals().volts, 1.1);
}

TEST(Channel, timeThatGoesBackChangesNothing) {
  LoadBench bench("2030", {12.6, 0.05, 5});
  bench.send(":CURR:STAT:L1 10;:LOAD ON");
  bench.pass(10s);
  const double drawn = bench.channel().drawn();
  bench.pass(-5s);
  EXPECT_EQ(bench.channel().drawn(), drawn);
  EXPECT_NEAR(bench.terminals().amps, 10, 1e-9);
}

TEST(Channel, judgesVoltsAndInConstantVoltageAmps) {
  LoadBench bench("2030", {12, 0.1});
  EXPECT_EQ(bench.ask(":SPEC:RES?"), "NONE");
  bench.send(":CURR:STAT:L1 10;:SPEC:VOLT:H 11.5;L 10.5;:SPEC:PASS ON;:LOAD ON");
  bench.pass(1s);
  EXPECT_EQ(bench.ask(":SPEC:RES?;:SPEC:PASS?"), "GO;1");
  bench.send(":SPEC:VOLT:L 11.2");
  EXPECT_EQ(bench.ask(":SPEC:RES?"), "NOGO");
  bench.send(":SPEC:VOLT:L 0;H 10.9");
  EXPECT_EQ(bench.ask(":SPEC:RES?"), "NOGO");
  bench.send(":MODE CV;:VOLT:L1 11.8;:SPEC:CURR:H 3;L 1");
  bench.pass(1s);
  EXPECT_EQ(bench.ask(":SPEC:RES?"), "GO");
  bench.send(":SPEC:CURR:H 1.9");
  EXPECT_EQ(bench.ask(":SPEC:RES?"), "NOGO");
  bench.send(":SPEC:PASS OFF");
  EXPECT_EQ(bench.ask(":SPEC:RES?"), "NONE");
}

TEST(Channel, everyChannelHasASourceOutOfTheBox) {
  zansim::Mainframe mainframe;
  for (std::size_t channel = 1; channel <= mainframe.channelCount(); ++channel) {
    const zansim::Terminals now = mainframe.channel(channel, 1s).terminals();
    EXPECT_GT(now.volts, 1) << channel;
    EXPECT_LT(now.volts, mainframe.module(channel).highVolts) << channel;
    EXPECT_NE(mainframe.channel(channel, 2s).terminals().volts, now.volts) << channel;
  }
}
