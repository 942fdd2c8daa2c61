#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <windows.h>

#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice::windows {

/// The event loop of a component in a program that has a message queue: on the thread that makes
/// it, timers tick whenever that thread handles messages, in loops of the host, of dialogs and of
/// menus alike.
///
///     lumodevice::windows::MessageLoop loop;
///     lumodevice::ZANCtrl load(lumodevice::systemHost({.loop = &loop}));
///
/// A tick alone never takes a message off the queue: the host's own loop does, with its
/// accelerators and dialogs. The passes of an operation's waits handle what is there; WM_QUIT among
/// it is posted again, and the operation goes on to its end. The loop is used on one thread alone.
class MessageLoop : public toolkit::EventLoop {
 public:
  /// Takes what a handler has thrown where no operation waits that it could end.
  using FailureHandler = std::function<void(std::exception_ptr)>;
  /// True for a message that was used up and is not to be dispatched.
  using MessageFilter = std::function<bool(MSG& message)>;

  /// Null: such a failure ends the program. Throws std::system_error where the system gives no
  /// window for messages.
  explicit MessageLoop(FailureHandler onFailure = nullptr);
  ~MessageLoop() override;

  [[nodiscard]] Duration now() const override;

  /// Sees each message that a pass takes off the queue before it is dispatched: the place for keys
  /// that move the focus or mean a button, and for what the host wants first.
  void setFilter(MessageFilter filter) { filter_ = std::move(filter); }

  /// Who keeps this loop, and is kept while it ticks: a tick may then end the component that it was
  /// for, and with it the last holder of the loop.
  void keptBy(std::weak_ptr<void> owner) { owner_ = std::move(owner); }

  /// Runs `act` in a window procedure, through which no exception may go: Windows would swallow it
  /// or end the program. What it throws ends the operation whose pass dispatched the message; where
  /// there is none, the failure handler takes it.
  template <typename Act>
  void guarded(Act act) noexcept {
    try {
      act();
    } catch (...) {
      failed(std::current_exception());
    }
  }

 protected:
  /// Windows are painted meanwhile, and messages that other threads send are answered; nothing of
  /// the queue is delivered.
  void wait(Duration span) override;
  void deliverInput() override;
  void timersChanged() noexcept override;

 private:
  class Window;

  void failed(std::exception_ptr failure) noexcept;
  void rethrow();
  void handle(MSG& message);
  void ring();

  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  FailureHandler onFailure_;
  MessageFilter filter_;
  std::weak_ptr<void> owner_;
  std::unique_ptr<Window> window_;
  std::optional<Duration> alarm_;  ///< when it goes off
  int dispatching_ = 0;            ///< messages that passes are dispatching now
  std::exception_ptr failure_;     ///< thrown by what they run
};

}  // namespace lumodevice::windows
