#include "lumodevice/qt/qt_loop.hpp"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <algorithm>
#include <optional>
#include <utility>

#include "views/qt/act.hpp"

namespace lumodevice::qt {

namespace {

/// Timers of Qt go off by the millisecond; never before the time.
std::chrono::milliseconds wholeMilliseconds(toolkit::EventLoop::Duration span) {
  return std::max(std::chrono::ceil<std::chrono::milliseconds>(span), std::chrono::milliseconds(0));
}

}  // namespace

/// Goes off once, at the next due time.
class QtLoop::Alarm {
 public:
  explicit Alarm(QtLoop& loop) : loop_(loop) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] { loop_.ring(); });
  }

  void set(std::optional<Duration> due) {
    if (!due) {
      timer_.stop();
    } else if (due != due_ || !timer_.isActive()) {
      timer_.start(wholeMilliseconds(*due - loop_.now()));
    }
    due_ = due;
  }

 private:
  QtLoop& loop_;
  QTimer timer_;
  std::optional<Duration> due_;
};

QtLoop::QtLoop(FailureHandler onFailure)
    : onFailure_(std::move(onFailure)), alarm_(std::make_unique<Alarm>(*this)) {}

QtLoop::~QtLoop() = default;

QtLoop::Duration QtLoop::now() const {
  return std::chrono::steady_clock::now() - start_;
}

void QtLoop::wait(Duration span) {
  const HeldActs held;
  const Duration end = now() + span;
  QEventLoop events;
  QTimer wakeUp;
  wakeUp.setSingleShot(true);
  wakeUp.setTimerType(Qt::PreciseTimer);
  for (Duration left = span; left > Duration(0); left = end - now()) {
    wakeUp.start(wholeMilliseconds(left));
    events.processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
  }
  // Qt has seen the input that it kept back, and would look at it with the next event only.
  QAbstractEventDispatcher::instance()->wakeUp();
}

void QtLoop::deliverInput() {
  struct Delivery {
    int& at;
    int before;
    explicit Delivery(int& level)
        : at(level), before(std::exchange(level, QThread::currentThread()->loopLevel())) {}
    ~Delivery() { at = before; }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;
  } const delivery(deliveringAt_);
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, Act::kind());
}

void QtLoop::ring() {
  // The pass that delivers input ticks what is due when it has done so; but not a dialog in it.
  if (deliveringAt_ == QThread::currentThread()->loopLevel()) {
    return;
  }
  try {
    tickDue();
  } catch (...) {
    onFailure_(std::current_exception());
  }
}

void QtLoop::timersChanged() noexcept {
  alarm_->set(nextDue());
}

}  // namespace lumodevice::qt
