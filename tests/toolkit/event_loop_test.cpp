#include "lumodevice/toolkit/event_loop.hpp"

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::toolkit {
namespace {

using namespace std::chrono_literals;

/// Two timers on a virtual loop, with a record of their ticks.
class Timers : public testing::Test {
 protected:
  Timers() {
    for (Timer* timer : {&slow, &fast}) {
      timer->joinLoop(loop);
      toolkit::handle(timer->tick, [this, timer] {
        ticks += timer->name() + "@" +
                 std::to_string(
                     std::chrono::duration_cast<std::chrono::milliseconds>(loop.now()).count()) +
                 " ";
      });
    }
  }

  VirtualLoop loop;
  Surface surface;
  Timer& slow = surface.add<Timer>("slow");
  Timer& fast = surface.add<Timer>("fast");
  std::string ticks;
};

TEST_F(Timers, tickOneIntervalAfterTheyWereSwitchedOnAndAfterEachTick) {
  fast.setInterval(35);
  loop.runFor(105ms);
  EXPECT_EQ(ticks, "fast@35 fast@70 fast@105 ");
}

TEST_F(Timers, tickOnlyWhileEventsAreProcessed) {
  fast.setInterval(35);
  loop.sleep(500);
  EXPECT_EQ(ticks, "");
  loop.processEvents();
  EXPECT_EQ(ticks, "fast@500 ") << "missed ticks merge into one";
  loop.processEvents();
  EXPECT_EQ(ticks, "fast@500 ");
}

TEST_F(Timers, thatAreDueInOnePassTickInTheOrderInWhichTheyFellDue) {
  slow.setInterval(100);
  fast.setInterval(60);
  loop.sleep(110);
  loop.processEvents();
  EXPECT_EQ(ticks, "fast@110 slow@110 ");
}

TEST_F(Timers, stopWithIntervalZeroOrWhenDisabled) {
  fast.setInterval(10);
  slow.setInterval(10);
  fast.setInterval(0);
  slow.setEnabled(false);
  loop.runFor(1s);
  EXPECT_EQ(ticks, "");
  slow.setEnabled(true);
  loop.runFor(10ms);
  EXPECT_EQ(ticks, "slow@1010 ");
}

TEST_F(Timers, tickNoMoreOnALoopThatTheyLeftAndStartOverOnTheNext) {
  fast.setInterval(10);
  loop.runFor(15ms);
  EXPECT_EQ(ticks, "fast@10 ");
  fast.leaveLoop();
  loop.runFor(100ms);
  VirtualLoop next;
  next.runFor(200ms);
  fast.joinLoop(next);
  next.runFor(9ms);
  EXPECT_EQ(ticks, "fast@10 ");
  next.runFor(1ms);
  EXPECT_EQ(ticks, "fast@10 fast@115 ") << "the handler tells the first loop's time";
  fast.leaveLoop();
}

TEST_F(Timers, startOverWhenTheirIntervalIsSet) {
  fast.setInterval(100);
  loop.runFor(80ms);
  fast.setInterval(100);
  loop.runFor(80ms);
  EXPECT_EQ(ticks, "");
  loop.runFor(20ms);
  EXPECT_EQ(ticks, "fast@180 ");
}

TEST_F(Timers, refuseIntervalsThatNoTimerRuns) {
  EXPECT_THROW(fast.setInterval(-1), PropertyFault);
  EXPECT_THROW(fast.setInterval(65536), PropertyFault);
  EXPECT_EQ(fast.interval(), 0);
  EXPECT_NO_THROW(fast.setInterval(65535));
}

TEST_F(Timers, neverTickInsideTheirOwnTickButOthersDo) {
  slow.setInterval(100);
  fast.setInterval(30);
  toolkit::handle(slow.tick, [this] {
    ticks += "(";
    loop.sleep(300);
    loop.processEvents();
    loop.sleep(300);
    loop.processEvents();
    ticks += ")";
  });
  loop.sleep(100);
  fast.setEnabled(false);
  fast.setEnabled(true);
  loop.processEvents();
  EXPECT_EQ(ticks, "(fast@400 fast@700 )");
}

TEST_F(Timers, tickAgainAfterAHandlerThatThrew) {
  fast.setInterval(10);
  toolkit::handle(fast.tick, [] { throw std::runtime_error("the host's own failure"); });
  loop.sleep(10);
  EXPECT_THROW(loop.processEvents(), std::runtime_error);
  toolkit::handle(fast.tick, [this] { ticks += "again"; });
  loop.runFor(10ms);
  EXPECT_EQ(ticks, "again");
}

TEST_F(Timers, nestedPassesDeliverOtherTimersOnce) {
  slow.setInterval(50);
  fast.setInterval(50);
  toolkit::handle(slow.tick, [this] {
    ticks += "slow ";
    loop.processEvents();
  });
  loop.sleep(60);
  loop.processEvents();
  EXPECT_EQ(ticks, "slow fast@60 ");
}

TEST(Timer, mayGoAwayInsideItsOwnTick) {
  VirtualLoop loop;
  auto surface = std::make_unique<Surface>();
  auto& timer = surface->add<Timer>("Timer1");
  timer.joinLoop(loop);
  timer.setInterval(5);
  toolkit::handle(timer.tick, [&] { surface.reset(); });
  loop.runFor(20ms);
  EXPECT_EQ(surface, nullptr);
}

TEST(Timer, outlivesItsLoop) {
  Surface surface;
  auto& timer = surface.add<Timer>("Timer1");
  {
    VirtualLoop loop;
    timer.joinLoop(loop);
    timer.setInterval(5);
  }
  EXPECT_NO_THROW(timer.setInterval(10));
}

TEST(EventLoop, anHourOfTicksIsExact) {
  VirtualLoop loop;
  Surface surface;
  auto& timer = surface.add<Timer>("Timer1");
  timer.joinLoop(loop);
  timer.setInterval(200);
  int count = 0;
  toolkit::handle(timer.tick, [&] { ++count; });
  loop.runFor(1h);
  EXPECT_EQ(count, 18000);
}

TEST(EventLoop, runsTimersThatFallDueAtTheEndOfItsLastHandler) {
  VirtualLoop loop;
  Surface surface;
  auto& slow = surface.add<Timer>("slow");
  auto& late = surface.add<Timer>("late");
  for (Timer* timer : {&slow, &late}) {
    timer->joinLoop(loop);
  }
  int ticks = 0;
  toolkit::handle(slow.tick, [&] { loop.sleep(40); });
  toolkit::handle(late.tick, [&] { ++ticks; });
  slow.setInterval(60);
  late.setInterval(100);
  loop.runFor(100ms);
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(loop.now(), 100ms);
}

TEST(EventLoop, sleepsWholeMillisecondsAndNothingThatIsNone) {
  VirtualLoop loop;
  std::vector<int> sleeps;
  const Subscription watching =
      loop.observeSleeps([&](std::int32_t milliseconds) { sleeps.push_back(milliseconds); });
  for (const double wait : {0.5, 1.5, 2.5, 0.0, -3.0, 1e300, 2147483647.0, 2147483648.0}) {
    loop.sleep(wait);
  }
  EXPECT_EQ(sleeps, (std::vector{2, 2, 2147483647}));
  EXPECT_EQ(loop.now(), 2147483651ms);
}

TEST(EventLoop, idlingIsNoSleepOfTheComponent) {
  VirtualLoop loop;
  bool slept = false;
  const Subscription watching = loop.observeSleeps([&](std::int32_t) { slept = true; });
  loop.idle(10ms);
  EXPECT_FALSE(slept);
  EXPECT_EQ(loop.now(), 10ms);
}

TEST(EventLoop, tellsOfEveryPass) {
  VirtualLoop loop;
  int passes = 0;
  const Subscription watching = loop.observePasses([&] { ++passes; });
  loop.processEvents();
  loop.tickDue();
  EXPECT_EQ(passes, 2);
}

TEST(RealTimeLoop, passesTimeByWaiting) {
  RealTimeLoop loop;
  Surface surface;
  auto& timer = surface.add<Timer>("Timer1");
  timer.joinLoop(loop);
  timer.setInterval(2);
  int count = 0;
  toolkit::handle(timer.tick, [&] { ++count; });
  const auto before = loop.now();
  loop.runFor(7ms);
  EXPECT_GE(loop.now() - before, 7ms);
  EXPECT_GE(count, 1);
  EXPECT_LE(count, 3);
}

}  // namespace
}  // namespace lumodevice::toolkit
