// Where source and load settle, against formulas written out here. All sources are without ripple
// and drift; the tolerance is 1e-9 of the value on the true state, and half a last digit on
// readings.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "tests/simulator/load_bench.hpp"

using namespace std::chrono_literals;
using zansim::Source;
using zansim::Terminals;
using zansim::tests::LoadBench;

namespace {

constexpr double kTolerance = 1e-9;
constexpr double kHalfADigit = 0.00005;

/// The terminals of a 2030 (80 V, 60 A, 300 W) on `source`, a second after these commands.
Terminals settle(const Source& source, const std::string& commands) {
  LoadBench bench("2030", source);
  bench.send(commands + ";:LOAD ON");
  bench.pass(1s);
  return bench.terminals();
}

void expectTerminals(const Terminals& found, double volts, double amps) {
  EXPECT_NEAR(found.volts, volts, kTolerance * std::max(1.0, volts));
  EXPECT_NEAR(found.amps, amps, kTolerance * std::max(1.0, amps));
}

}  // namespace

TEST(OperatingPoint, constantCurrentHighAndLow) {
  expectTerminals(settle({12, 0.1}, ":MODE CCH;:CURR:STAT:L1 20"), 10, 20);
  expectTerminals(settle({12, 0.1}, ":MODE CCL;:CURR:STAT:L1 5"), 11.5, 5);
  expectTerminals(settle({12, 0.1}, ":MODE CCH;:CURR:STAT:L1 0"), 12, 0);
  expectTerminals(settle({12, 0}, ":MODE CCH;:CURR:STAT:L1 20"), 12, 20);
}

TEST(OperatingPoint, constantVoltage) {
  expectTerminals(settle({12, 0.1}, ":MODE CV;:VOLT:L1 11"), 11, 10);
  expectTerminals(settle({12, 0.1}, ":MODE CV;:VOLT:L1 11;MODE FAST"), 11, 10);
  expectTerminals(settle({12, 0.1}, ":MODE CV;:VOLT:L1 13"), 12, 0);
  // The current limit holds the voltage up.
  expectTerminals(settle({12, 0.1}, ":MODE CV;:VOLT:L1 11;CURR 4"), 11.6, 4);
  expectTerminals(settle({12, 0}, ":MODE CV;:VOLT:L1 11;CURR 4"), 12, 4);
}

TEST(OperatingPoint, constantResistanceHighAndLow) {
  expectTerminals(settle({12, 0.1}, ":MODE CRL;:RES:L1 1.1"), 11, 10);
  expectTerminals(settle({12, 0.1}, ":MODE CRH;:RES:L1 11.9"), 11.9, 1);
  expectTerminals(settle({12, 0}, ":MODE CRL;:RES:L1 4"), 12, 3);
}

TEST(OperatingPoint, powerIsLimited) {
  // 60 V behind 1 ohm into 300 W: i^2 - 60 i + 300 = 0.
  const double amps = 30 - std::sqrt(600);
  const Terminals found = settle({60, 1}, ":MODE CCH;:CURR:STAT:L1 20");
  expectTerminals(found, 60 - amps, amps);
  EXPECT_NEAR(found.watts(), 300, 1e-6);
  expectTerminals(settle({60, 1}, ":MODE CRL;:RES:L1 1"), 60 - amps, amps);
  expectTerminals(settle({60, 1}, ":MODE CV;:VOLT:L1 20"), 60 - amps, amps);
  expectTerminals(settle({60, 0}, ":MODE CCH;:CURR:STAT:L1 20"), 60, 5);
}

TEST(OperatingPoint, aWeakSourceSaturatesTheLoadAtItsLeastResistance) {
  // With 5 ohms a 12 V source gives no 20 A; the load stands open at 0.025 ohm.
  expectTerminals(settle({12, 5}, ":CONF:VOLT:ON 0;:MODE CCH;:CURR:STAT:L1 20"), 12 * 0.025 / 5.025,
                  12 / 5.025);
  expectTerminals(settle({12, 5}, ":CONF:VOLT:ON 0;:MODE CV;:VOLT:L1 0"), 12 * 0.025 / 5.025,
                  12 / 5.025);
}

TEST(OperatingPoint, withoutASourceThereIsNothing) {
  for (const char* const mode :
       {"CCH", "CCL", "CV", "CRH", "CRL", "CCDH", "CCDL", "CRDH", "CRDL"}) {
    expectTerminals(
        settle({0, 0.1}, ":CONF:VOLT:ON 0;:CURR:STAT:L1 5;:VOLT:L1 0;:MODE " + std::string(mode)),
        0, 0);
    expectTerminals(
        settle({0, 0}, ":CONF:VOLT:ON 0;:CURR:STAT:L1 5;:VOLT:L1 0;:MODE " + std::string(mode)), 0,
        0);
  }
}

TEST(OperatingPoint, dynamicCurrentAlternatesBetweenItsLevels) {
  for (const char* const mode : {"CCDH", "CCDL"}) {
    LoadBench bench("2030", {12, 0.1});
    bench.send(":CURR:DYN:L1 5;L2 1;T1 10;T2 30;:MODE " + std::string(mode) + ";:LOAD ON");
    bench.pass(9ms);
    expectTerminals(bench.terminals(), 11.5, 5);
    bench.pass(10ms);
    expectTerminals(bench.terminals(), 11.9, 1);
    bench.pass(240h + 30ms);
    expectTerminals(bench.terminals(), 11.5, 5);
  }
}

TEST(OperatingPoint, dynamicResistanceAlternatesBetweenTheLevelsOfItsRange) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":RES:DYN:LOW:L1 1.1;L2 2.9;T1 10;T2 10;:RES:DYN:HIGH:L1 11.9;L2 23.9;T1 5;T2 5");
  bench.send(":MODE CRDL;:LOAD ON");
  bench.pass(5ms);
  expectTerminals(bench.terminals(), 11, 10);
  bench.pass(10ms);
  expectTerminals(bench.terminals(), 11.6, 4);
  bench.send(":MODE CRDH");
  bench.pass(4ms);
  expectTerminals(bench.terminals(), 11.9, 1);
  bench.pass(5ms);
  expectTerminals(bench.terminals(), 11.95, 0.5);
}

TEST(OperatingPoint, readingsAreThoseOfOneInstant) {
  LoadBench bench("2030", {12, 0.1, 5, 0.05, 0.1});
  bench.send(":CURR:STAT:L1 7.5;:LOAD ON");
  for (int i = 0; i < 100; ++i) {
    bench.pass(333ms);
    const Terminals truth = bench.terminals();
    EXPECT_NEAR(bench.read(":FETC:VOLT?"), truth.volts, kHalfADigit);
    EXPECT_NEAR(bench.read(":FETC:CURR?"), truth.amps, kHalfADigit);
    EXPECT_NEAR(bench.read(":FETC:POW?"), truth.volts * truth.amps, kHalfADigit);
    EXPECT_EQ(bench.ask(":MEAS:VOLT?;CURR?;POW?"), bench.ask(":FETC:VOLT?;CURR?;POW?"));
  }
}

TEST(OperatingPoint, aReadingHasAllItsDecimals) {
  LoadBench bench("2030", {0, 1});
  EXPECT_EQ(bench.ask(":FETC:VOLT?;CURR?;POW?"), "0.0000;0.0000;0.0000");
}

TEST(OperatingPoint, overRandomSettingsNothingIsCreatedAndAllLimitsHold) {
  std::mt19937 random(20240817);
  const auto between = [&](double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(random);
  };
  const char* const modeNames[] = {"CCH",  "CCL",  "CV",   "CRH", "CRL",
                                   "CCDH", "CCDL", "CRDH", "CRDL"};
  int drawing = 0;
  for (int round = 0; round < 1000; ++round) {
    const Source source{between(0, 80), between(0, 2), between(0, 2) < 1 ? 0 : between(0.01, 2)};
    LoadBench bench("2030", source);
    bench.send(":MODE " + std::string(modeNames[round % std::size(modeNames)]));
    for (const char* const header :
         {":CURR:STAT:L1", ":CURR:STAT:RISE", ":CURR:STAT:FALL", ":CURR:DYN:L1", ":CURR:DYN:L2",
          ":VOLT:L1", ":VOLT:CURR", ":RES:L1", ":RES:DYN:LOW:L1", ":RES:DYN:LOW:L2",
          ":RES:DYN:HIGH:L1", ":RES:DYN:HIGH:L2", ":CONF:VOLT:ON"}) {
      const double least = bench.read(std::string(header) + "? MIN");
      const double most = bench.read(std::string(header) + "? MAX");
      bench.send(std::string(header) + " " +
                 std::to_string(between(least + 1e-6, most * std::pow(between(0, 1), 3) + least)));
    }
    bench.send(":CURR:DYN:T1 " + std::to_string(between(0.03, 500)));
    bench.send(":LOAD ON");
    double drawnBefore = 0;
    for (int step = 0; step < 5; ++step) {
      bench.pass(std::chrono::nanoseconds(static_cast<std::int64_t>(std::pow(10, between(2, 12)))));
      const zansim::Channel& channel = bench.channel();
      const Terminals found = channel.terminals();
      SCOPED_TRACE("round " + std::to_string(round) + " step " + std::to_string(step));
      ASSERT_GE(found.amps, 0);
      ASSERT_GE(found.volts, -1e-9);
      ASSERT_LE(found.volts, source.volts + 1e-9);
      ASSERT_LE(found.amps, 60);
      ASSERT_LE(found.watts(), 300 * (1 + 1e-6));
      // What the load takes and the source's resistance burns is what the source gives.
      const double given = source.volts - source.voltsPerCoulomb() * channel.drawn();
      if (given > 0) {
        ASSERT_NEAR(found.watts() + found.amps * found.amps * source.ohms, given * found.amps,
                    1e-6);
      }
      ASSERT_GE(channel.drawn(), drawnBefore);
      ASSERT_LE(channel.drawn(),
                source.ampereHours > 0 ? source.ampereHours * 3600 * (1 + 1e-6) : 1e9);
      drawnBefore = channel.drawn();
      drawing += found.amps > 0 ? 1 : 0;
    }
  }
  EXPECT_GT(drawing, 2000);
}
