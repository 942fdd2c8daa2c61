#include "tests/support/waking_loop.hpp"

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::toolkit {
namespace {

using namespace std::chrono_literals;
using support::WakingLoop;

/// Timers that do what those of a panel do, with a record of every tick and its time: `poll` is
/// quick, `query` waits and processes events in its tick, `slow` switches the others.
class Panel {
 public:
  explicit Panel(EventLoop& loop) : loop_(loop) {
    for (Timer* timer : {&poll_, &query_, &slow_}) {
      timer->joinLoop(loop);
    }
    poll_.setInterval(35);
    query_.setInterval(200);
    slow_.setInterval(1500);
    handle(poll_.tick, [this] { note("poll"); });
    handle(query_.tick, [this] {
      note("query");
      loop_.processEvents();
      loop_.sleep(query_.interval() + 35.0);
      loop_.processEvents();
      note("queried");
    });
    handle(slow_.tick, [this] {
      note("slow");
      switch (++slowTicks_ % 5) {
        case 0:
          poll_.setEnabled(!poll_.enabled());
          break;
        case 1:
          poll_.setInterval(poll_.interval() % 50 + 7);
          break;
        case 2:
          query_.setInterval(query_.interval() == 200 ? 75 : 200);
          break;
        case 3:
          query_.leaveLoop();
          break;
        default:
          query_.joinLoop(loop_);
          break;
      }
    });
  }

  std::vector<std::string> ticks;

 private:
  void note(const std::string& what) {
    ticks.push_back(what + "@" + std::to_string(loop_.now().count()));
  }

  EventLoop& loop_;
  Surface surface_;
  Timer& poll_ = surface_.add<Timer>("poll");
  Timer& query_ = surface_.add<Timer>("query");
  Timer& slow_ = surface_.add<Timer>("slow");
  int slowTicks_ = 0;
};

TEST(ALoopThatWakesWhenTold, ticksForAnHourAsOneThatLooks) {
  VirtualLoop looking;
  Panel looked(looking);
  looking.runFor(1h);

  WakingLoop waking;
  Panel woken(waking);
  waking.runUntil(1h);

  EXPECT_GT(looked.ticks.size(), 50000U);
  EXPECT_TRUE(woken.ticks == looked.ticks);
  EXPECT_EQ(waking.now(), looking.now());
}

class Alarm : public testing::Test {
 protected:
  Alarm() {
    for (Timer* timer : {slow, &fast}) {
      timer->joinLoop(loop);
      handle(timer->tick, [this, timer] { ticks += timer->name() + " "; });
    }
  }

  WakingLoop loop;
  std::unique_ptr<Surface> ending = std::make_unique<Surface>();
  Surface surface;
  Timer* slow = &ending->add<Timer>("slow");
  Timer& fast = surface.add<Timer>("fast");
  std::string ticks;
};

TEST_F(Alarm, followsTheTimers) {
  EXPECT_EQ(loop.alarm(), std::nullopt);
  slow->setInterval(100);
  EXPECT_EQ(loop.alarm(), 100ms);
  fast.setInterval(30);
  EXPECT_EQ(loop.alarm(), 30ms);
  fast.setEnabled(false);
  EXPECT_EQ(loop.alarm(), 100ms);
  fast.setEnabled(true);
  EXPECT_EQ(loop.alarm(), 30ms);
  fast.leaveLoop();
  EXPECT_EQ(loop.alarm(), 100ms);
  fast.joinLoop(loop);
  EXPECT_EQ(loop.alarm(), 30ms);
  fast.setInterval(0);
  EXPECT_EQ(loop.alarm(), 100ms);
  ending.reset();
  EXPECT_EQ(loop.alarm(), std::nullopt);
}

TEST_F(Alarm, isSetForTheOthersDuringATickAndForItselfAfterIt) {
  fast.setInterval(30);
  slow->setInterval(100);
  std::optional<EventLoop::Duration> within;
  handle(fast.tick, [&] { within = loop.alarm(); });
  loop.runUntil(30ms);
  EXPECT_EQ(within, 100ms);
  EXPECT_EQ(loop.alarm(), 60ms);
}

TEST_F(Alarm, isSetAfterATickThatThrew) {
  fast.setInterval(30);
  handle(fast.tick, [] { throw std::runtime_error("the host's own failure"); });
  EXPECT_THROW(loop.runUntil(30ms), std::runtime_error);
  EXPECT_EQ(loop.alarm(), 60ms);
}

TEST_F(Alarm, thatGoesOffTooEarlyIsSetAgain) {
  fast.setInterval(30);
  loop.wakeUp();
  EXPECT_EQ(loop.alarm(), 30ms);
  EXPECT_EQ(ticks, "");
}

TEST_F(Alarm, thatGoesOffLateTicksOnce) {
  fast.setInterval(30);
  loop.sleep(100);
  loop.runUntil(129ms);
  EXPECT_EQ(ticks, "fast ");
  EXPECT_EQ(loop.alarm(), 130ms) << "one interval after the tick began";
}

TEST_F(Alarm, ticksTheOthersInALoopWithinATickAsAnInformationBoxHasIt) {
  fast.setInterval(30);
  slow->setInterval(100);
  handle(slow->tick, [&] {
    ticks += "box( ";
    loop.runUntil(loop.now() + 250ms);
    ticks += ") ";
  });
  loop.runUntil(110ms);
  EXPECT_EQ(ticks, "fast fast fast box( fast fast fast fast fast fast fast fast ) ");
  EXPECT_EQ(loop.now(), 350ms);
  EXPECT_EQ(loop.alarm(), 200ms) << "its own next tick was due while it ran";
}

/// A loop of a window system that is given time to repaint in a wait, and uses it for more.
class UnrulyLoop : public WakingLoop {
 public:
  int input = 0;

 protected:
  void wait(Duration span) override {
    WakingLoop::wait(span);
    if (!std::exchange(unruly_, true)) {
      wakeUp();
      processEvents();
      runFor(10ms);
      sleep(10);
      unruly_ = false;
    }
  }
  void deliverInput() override { ++input; }

 private:
  bool unruly_ = false;
};

class DuringAWait : public testing::Test {
 protected:
  DuringAWait() {
    timer.joinLoop(loop);
    timer.setInterval(30);
    handle(timer.tick, [this] { ++ticks; });
  }
  UnrulyLoop loop;
  Surface surface;
  Timer& timer = surface.add<Timer>("timer");
  int ticks = 0;
};

TEST_F(DuringAWait, nothingTicksAndNoInputIsDelivered) {
  loop.sleep(80);
  EXPECT_EQ(loop.now(), 100ms) << "waits within it are waits";
  loop.idle(80ms);
  EXPECT_EQ(ticks, 0);
  EXPECT_EQ(loop.input, 0);
}

TEST_F(DuringAWait, theAlarmIsKeptForItsEnd) {
  loop.sleep(80);
  EXPECT_EQ(loop.alarm(), 30ms);
  loop.runUntil(loop.now());
  EXPECT_EQ(ticks, 1) << "what was missed merges into one";
}

TEST_F(DuringAWait, thatIsBrokenOffTheNextPassIsNotLost) {
  struct BrokenLoop : WakingLoop {
    void wait(Duration /*span*/) override { throw std::runtime_error("of the window system"); }
  } broken;
  timer.joinLoop(broken);
  EXPECT_THROW(broken.sleep(5), std::runtime_error);
  EXPECT_EQ(broken.alarm(), 30ms);
  broken.runUntil(30ms);
  EXPECT_EQ(ticks, 1);
}

TEST(TickDue, isAPassWithoutInput) {
  struct InputLoop : VirtualLoop {
    int input = 0;
    void deliverInput() override { ++input; }
  } loop;
  Surface surface;
  auto& timer = surface.add<Timer>("timer");
  int ticks = 0;
  timer.joinLoop(loop);
  timer.setInterval(10);
  handle(timer.tick, [&] {
    ++ticks;
    loop.sleep(10);  // due again when the tick ends, but in the next pass
  });
  loop.sleep(10);
  loop.tickDue();
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(loop.input, 0);
  loop.processEvents();
  EXPECT_EQ(ticks, 2);
  EXPECT_EQ(loop.input, 1);
}

}  // namespace
}  // namespace lumodevice::toolkit
