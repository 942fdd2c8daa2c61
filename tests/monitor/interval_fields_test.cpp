#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "lumodevice/toolkit/timer.hpp"
#include "tests/support/panel_bench.hpp"

namespace lumodevice::monitor {
namespace {

using support::PanelBench;

using namespace std::chrono_literals;
using toolkit::Key;

/// A field of the console and the timer that it sets.
struct Field {
  const char* name;
  const char* timer;
  const char* initial;
};
constexpr Field kFields[] = {{"Text5", "Timer1", "200"}, {"Text6", "Timer2", "35"}};

/// What a field shows and its timer has after Enter: "200 200".
std::string after(PanelBench& bench, const Field& field, const std::string& typed,
                  Key key = Key::Enter) {
  bench.type(field.name, typed);
  bench.press(field.name, key);
  return bench.text(field.name) + ' ' + bench.read(field.timer, "Interval");
}

TEST(IntervalField, givesItsTimerTheIntervalOfTheStart) {
  PanelBench bench;
  for (const Field& field : kFields) {
    EXPECT_EQ(bench.text(field.name), field.initial);
    EXPECT_EQ(bench.read(field.timer, "Interval"), field.initial);
  }
}

TEST(IntervalField, setsItsTimerOnEnter) {
  for (const Field& field : kFields) {
    PanelBench bench;
    EXPECT_EQ(after(bench, field, "500"), "500 500");
    EXPECT_EQ(after(bench, field, "1"), "1 1");
    EXPECT_EQ(after(bench, field, "65535"), "65535 65535");
    EXPECT_EQ(after(bench, field, " 3 0 ms"), " 3 0 ms 30");
    EXPECT_EQ(after(bench, field, "&H10"), "&H10 16");
    EXPECT_EQ(after(bench, field, "1e3"), "1e3 1000");
  }
}

TEST(IntervalField, leavesTheOtherTimerAlone) {
  PanelBench bench;
  after(bench, kFields[0], "500");
  EXPECT_EQ(bench.read("Timer2", "Interval"), "35");
  after(bench, kFields[1], "50");
  EXPECT_EQ(bench.read("Timer1", "Interval"), "500");
}

TEST(IntervalField, takesFractionsToTheNearestWholeNumber) {
  for (const Field& field : kFields) {
    PanelBench bench;
    EXPECT_EQ(after(bench, field, "100.4"), "100.4 100");
    EXPECT_EQ(after(bench, field, "100.6"), "100.6 101");
    EXPECT_EQ(after(bench, field, "100.5"), "100.5 100") << "halves go to the even number";
    EXPECT_EQ(after(bench, field, "101.5"), "101.5 102");
    EXPECT_EQ(after(bench, field, "0.6"), "0.6 1");
    EXPECT_EQ(after(bench, field, "0.4"), "0.4 0") << "positive, though it stops the timer";
  }
}

TEST(IntervalField, showsTheIntervalInForceForOneThatIsNotPositive) {
  for (const Field& field : kFields) {
    PanelBench bench;
    const std::string unchanged = std::string(field.initial) + ' ' + field.initial;
    for (const char* typed : {"0", "0.0", "-1", "-0.4", "-70000", "", " ", "abc", "ms 5", "١٢"}) {
      EXPECT_EQ(after(bench, field, typed), unchanged) << typed;
    }
    after(bench, field, "70.2");
    EXPECT_EQ(after(bench, field, "0"), "70 70");
  }
}

TEST(IntervalField, showsTheIntervalInForceForOneThatNoTimerCanRun) {
  for (const Field& field : kFields) {
    PanelBench bench;
    const std::string unchanged = std::string(field.initial) + ' ' + field.initial;
    for (const std::string& typed :
         {std::string("65536"), std::string("65535.6"), std::string("3000000000"),
          std::string("1e400"), std::string("&HFFFFFFFFF"), std::string(10'000, '9')}) {
      EXPECT_EQ(after(bench, field, typed), unchanged) << typed.substr(0, 20);
    }
  }
}

TEST(IntervalField, leavesOtherKeysAlone) {
  for (const Field& field : kFields) {
    PanelBench bench;
    EXPECT_EQ(after(bench, field, "500", Key::Up), std::string("500 ") + field.initial);
    EXPECT_EQ(after(bench, field, "0", Key::Down), std::string("0 ") + field.initial);
  }
}

TEST(IntervalField, changesNothingUntilEnterIsPressed) {
  PanelBench bench;
  bench.type("Text5", "500");
  EXPECT_EQ(bench.read("Timer1", "Interval"), "200");
}

TEST(IntervalField, worksWithoutALinkAndSendsNothing) {
  PanelBench bench;
  bench.connect();
  after(bench, kFields[0], "300");
  after(bench, kFields[1], "0");
  EXPECT_EQ(bench.sent(), "");
}

TEST(IntervalField, ofTheCommandPeriodIsTheWaitUnitAtOnce) {
  PanelBench bench;
  bench.connect();
  bench.type("Text5", "30");
  bench.set(0, "1");
  EXPECT_EQ(bench.journal({"sleep"}), "sleep 30\n");
}

TEST(IntervalField, setsThePaceOfTheAutoQuery) {
  PanelBench bench;
  bench.connect();
  after(bench, kFields[0], "1000");
  bench.click("chkAutoQuery");
  (void)bench.journal();
  bench.run(999ms);
  EXPECT_EQ(bench.sent(), "");
  bench.run(1ms);
  EXPECT_EQ(bench.sent(), ":FETC:VOLT?\n");
  bench.run(2000ms);
  EXPECT_EQ(bench.sent(), ":FETC:CURR?\n:FETC:POW?\n");
}

}  // namespace
}  // namespace lumodevice::monitor
