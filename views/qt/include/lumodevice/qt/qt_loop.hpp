#pragma once

#include <chrono>
#include <memory>

#include "lumodevice/export.hpp"
#include "lumodevice/qt/failure.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice::qt {

/// The event loop of a component in a Qt program: its timers tick in Qt's own loop, wherever that
/// runs (QApplication::exec(), a dialog, a message box, a drag), and its passes and waits are Qt's.
///
///     lumodevice::qt::QtLoop qtLoop;
///     lumodevice::ZANCtrl device(lumodevice::simulatedHost({.loop = &qtLoop}));
///
/// One alarm is set to the next due time; nothing polls. While the component waits, windows are
/// repainted and the program's own timers tick, but nobody's input is delivered and none of the
/// component's timers ticks; what the operator does meanwhile happens at its next pass. A VISA
/// library that waits by itself, within viRead, holds the windows up for as long.
///
/// Made, used and ended on the thread of the QApplication, while there is one.
class LUMODEVICE_API QtLoop : public toolkit::EventLoop {
 public:
  /// `onFailure` is handed what the ticks throw.
  explicit QtLoop(FailureHandler onFailure = reportFailure);
  ~QtLoop() override;

  [[nodiscard]] Duration now() const override;

 protected:
  void wait(Duration span) override;
  void deliverInput() override;
  void timersChanged() noexcept override;

 private:
  class Alarm;
  /// No level of Qt's loops.
  static constexpr int kNone = -1;

  void ring();

  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  FailureHandler onFailure_;
  /// The level of Qt's loops at which a pass of the component delivers input now.
  int deliveringAt_ = kNone;
  std::unique_ptr<Alarm> alarm_;
};

}  // namespace lumodevice::qt
