#include "lumodevice/qt/qt_loop.hpp"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <chrono>
#include <ctime>
#include <gtest/gtest.h>
#include <qpa/qwindowsysteminterface.h>
#include <stdexcept>
#include <string>
#include <utility>

#include "lumodevice/qt/information_box.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::qt {
namespace {

using namespace std::chrono_literals;

class OnQtLoop : public testing::Test {
 protected:
  OnQtLoop() {
    timer.joinLoop(loop);
    toolkit::handle(timer.tick, [this] {
      ++ticks;
      if (onTick) {
        onTick();
      }
    });
  }
  ~OnQtLoop() override { timer.leaveLoop(); }

  /// A loop of Qt's until the timer has ticked so many times more.
  void runQtUntilTicks(int more) {
    constexpr std::chrono::seconds kGivenUp{20};
    QEventLoop events;
    QTimer::singleShot(kGivenUp, &events, &QEventLoop::quit);
    const int enough = ticks + more;
    const auto before = std::exchange(onTick, nullptr);
    onTick = [&] {
      if (ticks >= enough) {
        events.quit();
      }
      if (before) {
        before();
      }
    };
    events.exec();
    onTick = before;
    EXPECT_GE(ticks, enough);
  }
  static void runQtFor(std::chrono::milliseconds span) {
    QEventLoop events;
    QTimer::singleShot(span, Qt::PreciseTimer, &events, &QEventLoop::quit);
    events.exec();
  }

  std::string failures;
  QtLoop loop{[this](const std::exception_ptr& failure) {
    try {
      std::rethrow_exception(failure);
    } catch (const std::exception& exception) {
      failures += exception.what();
    }
  }};
  toolkit::Surface surface;
  toolkit::Timer& timer = surface.add<toolkit::Timer>("timer");
  int ticks = 0;
  std::function<void()> onTick;
};

TEST_F(OnQtLoop, timersTickInQtsOwnLoop) {
  timer.setInterval(20);
  const auto begin = loop.now();
  runQtUntilTicks(4);
  EXPECT_GE(loop.now() - begin, 80ms);
  timer.setEnabled(false);
  const int before = ticks;
  runQtFor(60ms);
  EXPECT_EQ(ticks, before);
}

TEST_F(OnQtLoop, timersTickWhileAnInformationBoxStands) {
  timer.setInterval(20);
  QString text;
  onTick = [&] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box != nullptr && ticks >= 3) {
      text = box->text();
      box->accept();
    }
  };
  InformationBoxes()("Pleace Connect to Deivce first! <b>");
  EXPECT_EQ(text, QStringLiteral("Pleace Connect to Deivce first! <b>"));
}

TEST_F(OnQtLoop, anotherTimerTicksInALoopWithinATick) {
  auto& slow = surface.add<toolkit::Timer>("slow");
  slow.joinLoop(loop);
  int within = 0;
  toolkit::handle(slow.tick, [&] {
    slow.setEnabled(false);
    const int before = ticks;
    runQtUntilTicks(2);
    within = ticks - before;
  });
  timer.setInterval(20);
  slow.setInterval(30);
  runQtFor(50ms);
  EXPECT_GE(within, 2);
  slow.leaveLoop();
}

TEST_F(OnQtLoop, nothingWakesUpBetweenTwoTicks) {
  timer.setInterval(200);
  int wakes = 0;
  QObject watcher;
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &watcher,
                   [&wakes] { ++wakes; });
  runQtUntilTicks(3);
  EXPECT_LE(wakes, 16) << "a few for each tick and for the end";
}

TEST_F(OnQtLoop, nothingWakesUpWhileNoTimerRuns) {
  int wakes = 0;
  QObject watcher;
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &watcher,
                   [&wakes] { ++wakes; });
  runQtFor(300ms);
  EXPECT_LE(wakes, 6);
}

TEST_F(OnQtLoop, aWaitLastsItsTimeAndTicksNothing) {
  timer.setInterval(10);
  const auto begin = loop.now();
  loop.sleep(120);
  EXPECT_GE(loop.now() - begin, 120ms);
  EXPECT_EQ(ticks, 0);
  loop.processEvents();
  EXPECT_EQ(ticks, 1) << "what was missed merges into one";
}

TEST_F(OnQtLoop, aWaitTicksNothingEvenWhereTheProgramPassesEventsInIt) {
  timer.setInterval(10);
  QTimer::singleShot(30, [this] { loop.processEvents(); });
  loop.sleep(80);
  EXPECT_EQ(ticks, 0);
}

TEST_F(OnQtLoop, whatATickThrowsIsHandedOverAndTheNextOneComes) {
  onTick = [] { throw std::runtime_error("of the host's own "); };
  timer.setInterval(30);
  runQtUntilTicks(2);
  EXPECT_EQ(failures.substr(0, 36), "of the host's own of the host's own ");
}

TEST_F(OnQtLoop, whatATickThrowsInAPassOfTheComponentEndsThatPass) {
  onTick = [] { throw std::runtime_error("of the host's own"); };
  timer.setInterval(1);
  loop.idle(5ms);
  EXPECT_THROW(loop.processEvents(), std::runtime_error);
  EXPECT_EQ(failures, "");
}

/// Wants to be painted anew all the time, and knows how long it had to wait at most.
class RestlessWidget : public QWidget {
 public:
  RestlessWidget() {
    beat_.setInterval(5);
    beat_.callOnTimeout([this] { update(); });
    beat_.start();
  }
  int paints = 0;
  qint64 longestGap = 0;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    if (paints++ > 0) {
      longestGap = std::max(longestGap, since_.elapsed());
    }
    since_.start();
  }

 private:
  QTimer beat_;
  QElapsedTimer since_;
};

TEST_F(OnQtLoop, aWindowIsRepaintedDuringAWait) {
  RestlessWidget widget;
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  widget.paints = 0;
  widget.longestGap = 0;
  loop.sleep(400);
  EXPECT_GE(widget.paints, 4);
  EXPECT_LT(widget.longestGap, 200) << "of the 400, on a machine that does other things, too";
}

class ClickedWidget : public QWidget {
 public:
  int clicks = 0;

 protected:
  void mousePressEvent(QMouseEvent* /*event*/) override { ++clicks; }
};

TEST_F(OnQtLoop, noInputIsDeliveredDuringAWaitAndAllOfItAfterwards) {
  ClickedWidget widget;
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  QTimer::singleShot(20, [&widget] {
    const QPointF at(5, 5);
    const QPointF global = widget.mapToGlobal(at);
    QWindowSystemInterface::handleMouseEvent(widget.windowHandle(), at, global, Qt::LeftButton,
                                             Qt::LeftButton, QEvent::MouseButtonPress);
  });
  const std::clock_t before = std::clock();
  loop.sleep(100);
  const std::clock_t spent = std::clock() - before;
  EXPECT_EQ(widget.clicks, 0);
  EXPECT_LT(spent, CLOCKS_PER_SEC / 20) << "what waits keeps nobody busy";
  loop.processEvents();
  EXPECT_EQ(widget.clicks, 1);
}

TEST_F(OnQtLoop, aWaitEndsInTimeAlsoWhenTheProgramIsToldToQuit) {
  QTimer::singleShot(10, [] { QApplication::quit(); });
  const auto begin = loop.now();
  loop.sleep(60);
  EXPECT_GE(loop.now() - begin, 60ms);
  EXPECT_LT(loop.now() - begin, 1s);
}

}  // namespace
}  // namespace lumodevice::qt
