#include "hosts/zanpanel/readings/monitor.hpp"

#include <gtest/gtest.h>

#include "tests/hosts/zanpanel/simulated_load.hpp"

namespace zanpanel {
namespace {

using namespace std::chrono_literals;

/// Channel 3 of the simulated load at 5 A.
class Monitored : public testing::Test {
 protected:
  void start() {
    bench.connect();
    bench.choose(2);
    bench.type("txtInput", 0, "5");
    bench.click("cmdSet", 0);
    bench.load.AutoQuery(true);
  }
  [[nodiscard]] std::vector<Mark::Kind> kinds() {
    std::vector<Mark::Kind> all;
    for (const Mark& mark : bench.monitor.current()->marks) {
      all.push_back(mark.kind);
    }
    return all;
  }

  SimulatedLoad bench;
};

TEST_F(Monitored, keepsTheReadingsOfTheChannelThatAnswers) {
  start();
  bench.click("chkLoad");
  bench.run(10s);
  EXPECT_EQ(bench.monitor.channel(), "CH3-2040");
  ASSERT_NE(bench.monitor.current(), nullptr);
  EXPECT_NEAR(bench.monitor.current()->lastAmperes->value, 5.0, 0.01);
  EXPECT_EQ(bench.monitor.current()->lastVolts->text,
            bench.load.surface().get<lumodevice::toolkit::TextBox>("txtVoltage", 0).text());
  EXPECT_EQ(bench.monitor.current()->load.on(), true);
  EXPECT_GE(bench.monitor.current()->volts.curve(0ms, 1h, 100).size(), 9U);
}

TEST_F(Monitored, followsAChannelThatIsChosenOverTheConsole) {
  start();
  bench.load.SendCmd(":CHAN 4");
  bench.run(3s);
  EXPECT_EQ(bench.monitor.channel(), "CH4-2040");
  EXPECT_EQ(bench.ask(":CHAN?"), "4");
}

TEST_F(Monitored, knowsTheChannelThatTheInstrumentNamesAlsoWhereTheListDoesNotOfferIt) {
  bench.connect();
  EXPECT_EQ(bench.monitor.channel(), "CH1-2021L");
  bench.load.SendCmd(":CHAN 3;:CHAN 5");
  EXPECT_EQ(bench.ask(":CHAN?"), "5");
  EXPECT_EQ(bench.monitor.channel(), "CH5-2041");
}

TEST_F(Monitored, countsChargeOnlyWhileTheLoadIsOn) {
  start();
  bench.run(60s);
  EXPECT_EQ(bench.monitor.current()->counters.ampereHours(), 0.0);
  bench.click("chkLoad");
  bench.run(360s);
  const double charge = bench.monitor.current()->counters.ampereHours();
  EXPECT_NEAR(charge, 0.5, 0.005);
  bench.click("chkLoad");
  bench.run(60s);
  EXPECT_NEAR(bench.monitor.current()->counters.ampereHours(), charge, 0.002);
}

TEST_F(Monitored, marksALoadThatWentOffByItself) {
  start();
  bench.click("chkLoad");
  bench.run(3s);
  bench.type("txtInput", 26, "60");
  bench.click("chkUVP");
  bench.run(5s);
  EXPECT_EQ(bench.monitor.current()->load.on(), false);
  EXPECT_TRUE(bench.monitor.current()->load.tripped());
  EXPECT_EQ(kinds().back(), Mark::Kind::Trip);
}

TEST_F(Monitored, saysThatTheLinkIsLostAndBack) {
  start();
  bench.click("chkLoad");
  bench.run(10s);
  bench.cable.unplugged = true;
  bench.run(12s);
  EXPECT_TRUE(bench.monitor.linkLost());
  EXPECT_FALSE(bench.monitor.current()->counters.counting());
  const double charge = bench.monitor.current()->counters.ampereHours();
  bench.run(120s);
  bench.cable.unplugged = false;
  bench.run(10s);
  EXPECT_FALSE(bench.monitor.linkLost());
  EXPECT_EQ(kinds().back(), Mark::Kind::LinkBack);
  EXPECT_LT(bench.monitor.current()->counters.ampereHours() - charge, 5.0 * 12 / 3600);
}

TEST_F(Monitored, hearsOfTheErrorQueue) {
  start();
  std::string heard;
  const auto hearing =
      bench.monitor.errors.observe([&](const std::string& entry) { heard += entry + '|'; });
  bench.load.SendCmd(":NONSENSE 1");
  bench.run(5s);
  EXPECT_NE(heard, "");
  EXPECT_EQ(heard.find('|'), heard.size() - 1);
  EXPECT_EQ(bench.monitor.lastError() + '|', heard);
}

TEST_F(Monitored, takesNothingThatIsNoNumberForAReading) {
  start();
  bench.run(3s);
  EXPECT_TRUE(bench.monitor.current()->lastVolts);
  EXPECT_EQ(bench.monitor.lastError(), "");
  EXPECT_FALSE(bench.monitor.linkLost());
}

}  // namespace
}  // namespace zanpanel
