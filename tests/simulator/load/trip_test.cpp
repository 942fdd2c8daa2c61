// Protections: what trips, when, and what brings the load back.

#include <chrono>
#include <gtest/gtest.h>

#include "tests/simulator/load_bench.hpp"

using namespace std::chrono_literals;
using zansim::tests::LoadBench;

namespace {

void expectTripped(LoadBench& bench, const char* cause) {
  EXPECT_EQ(bench.ask(":LOAD?;:CONF:PROT:TRIP?"), std::string("0;") + cause);
  EXPECT_EQ(bench.terminals().amps, 0);
  EXPECT_EQ(bench.ask(":LOAD ON"), "");
  EXPECT_EQ(bench.error(), -300);
  EXPECT_EQ(bench.ask(":LOAD?"), "0");
}

/// The load can be switched on, and the trip's cause is gone.
void expectCleared(LoadBench& bench) {
  EXPECT_EQ(bench.ask(":CONF:PROT:TRIP?"), "NONE");
  bench.send(":LOAD ON");
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
}

}  // namespace

TEST(Trip, overCurrentAtTheInstantWhenTheRisingCurrentPassesTheLevel) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":CURR:STAT:L1 10;RISE 0.1;:CONF:PROT:CURR:LEV 5;STAT ON;:LOAD ON");
  bench.pass(49'900ns);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
  EXPECT_NEAR(bench.terminals().amps, 4.99, 1e-9);
  bench.pass(200ns);
  expectTripped(bench, "OCP");
}

TEST(Trip, overCurrentNeedsItsStateAndACurrentAboveItsLevel) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":CURR:STAT:L1 10;:CONF:PROT:CURR:LEV 5;:LOAD ON");
  bench.pass(1s);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
  bench.send(":CONF:PROT:CURR:LEV 10;STAT ON");
  bench.pass(1s);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
  bench.send(":CONF:PROT:CURR:LEV 9.99");
  bench.pass(1ns);
  expectTripped(bench, "OCP");
}

TEST(Trip, overCurrentSeesThePeaksOfADynamicCurrent) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":MODE CCDH;:CURR:DYN:L1 2;L2 8;T1 10;T2 0.025;:CONF:PROT:CURR:LEV 6;STAT ON");
  bench.send(":LOAD ON");
  bench.pass(10ms);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
  bench.pass(2ms);
  expectTripped(bench, "OCP");
}

TEST(Trip, overCurrentIsClearedByItsStateOrByClear) {
  for (const char* const clear : {":CONF:PROT:CURR:STAT OFF", ":CONF:PROT:CLE", "*RST"}) {
    LoadBench bench("2030", {12, 0.1});
    bench.send(":CURR:STAT:L1 10;:CONF:PROT:CURR:LEV 5;STAT ON;:LOAD ON");
    bench.pass(1s);
    for (const char* const other : {":CONF:PROT:UVP:CLE", ":CONF:PROT:VOLT:STAT OFF", ":LOAD OFF",
                                    ":CURR:STAT:L1 1", "*CLS"}) {
      bench.send(other);
      expectTripped(bench, "OCP");
    }
    bench.send(clear);
    expectCleared(bench);
  }
}

TEST(Trip, overVoltageWhenTheTerminalsPassTheLevel) {
  LoadBench bench("2030", {12, 0.1});
  bench.send(":CURR:STAT:L1 1;:CONF:PROT:VOLT:LEV 11.95;:LOAD ON");
  bench.pass(1s);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
  bench.send(":CONF:PROT:VOLT:STAT ON");
  bench.pass(1s);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");  // 11.9 V under load
  bench.channel().connect({12.2, 0.1});
  bench.pass(1s);
  expectTripped(bench, "OVP");
  bench.send(":CONF:PROT:VOLT:STAT OFF");
  expectCleared(bench);
}

TEST(Trip, voltsBeyondTheRangeTripAndHaveNoReading) {
  LoadBench bench("2030", {48, 0.1});
  bench.send(":CURR:STAT:L1 1;:CONF:VOLT:RANGE LOW");
  EXPECT_EQ(bench.ask(":FETC:VOLT?;CURR?;POW?"), "9.9E37;0.0000;9.9E37");
  bench.send(":LOAD ON");
  bench.pass(1us);
  expectTripped(bench, "OVP");
  bench.send(":CONF:VOLT:RANGE HIGH");
  expectCleared(bench);
  bench.pass(1s);
  EXPECT_EQ(bench.ask(":LOAD?;:FETC:VOLT?"), "1;47.9000");
}

TEST(Trip, underVoltageEndsADischarge) {
  LoadBench bench("2030", {12.6, 0.05, 5});
  bench.send(":CURR:STAT:L1 10;:CONF:PROT:UVP:LEV 11.5;:LOAD ON");
  // 12.1 V at the start, falling by 12.6 V in 1800 s.
  const double seconds = 0.6 / 12.6 * 1800;
  bench.pass(
      std::chrono::duration_cast<zansim::Duration>(std::chrono::duration<double>(seconds - 0.01)));
  EXPECT_EQ(bench.ask(":LOAD?;:CONF:PROT:TRIP?"), "1;NONE");
  EXPECT_NEAR(bench.terminals().volts, 11.5, 1e-3);
  bench.pass(20ms);
  expectTripped(bench, "UVP");
  EXPECT_NEAR(bench.terminals().volts, 12.0, 1e-3);
}

TEST(Trip, theInstantDoesNotDependOnWhenItIsAsked) {
  LoadBench bench("2030", {12.6, 0.05, 5});
  bench.send(":CURR:STAT:L1 10;:CONF:PROT:UVP:LEV 11.5;:LOAD ON");
  bench.pass(24h * 30);
  expectTripped(bench, "UVP");
  EXPECT_NEAR(bench.channel().drawn(), 0.6 / 12.6 * 18000, 0.01);
}

TEST(Trip, underVoltageIsClearedByClearOrByLevelZero) {
  for (const char* const clear :
       {":CONF:PROT:UVP:CLEAR", ":CONF:PROT:UVP:CLEAR 1", ":CONF:PROT:UVP:LEV 0",
        ":CONF:PROT:UVP:LEV MIN", ":CONF:PROT:CLEAR", "*RST"}) {
    LoadBench bench("2030", {12, 0.1});
    bench.send(":CURR:STAT:L1 10;:CONF:PROT:UVP:LEV 11.5;:LOAD ON");
    bench.pass(1s);
    expectTripped(bench, "UVP");
    bench.send(":CONF:PROT:UVP:LEV 11");
    expectTripped(bench, "UVP");
    EXPECT_EQ(bench.ask(":CONF:PROT:UVP:CLEAR NOW"), "");
    EXPECT_EQ(bench.error(), -224);
    bench.send(clear);
    expectCleared(bench);
  }
}

TEST(Trip, underVoltageAtZeroIsOffAndWaitsForTheLoadOnVoltage) {
  LoadBench bench("2030", {0, 0.1});
  bench.send(":CURR:STAT:L1 10;:LOAD ON");
  bench.pass(1s);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
  bench.send(":CONF:PROT:UVP:LEV 5");
  bench.pass(1s);
  EXPECT_EQ(bench.ask(":LOAD?"), "1");
  bench.channel().connect({4, 0.01});
  bench.pass(1s);
  expectTripped(bench, "UVP");
}
