#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"
#include "lumodevice/toolkit/observers.hpp"

namespace lumodevice::toolkit {

/// Thrown in an operation whose component was ended meanwhile, by its next wait or by the event
/// whose observer did it; the operation ends there. Caught where the operation was started: by the
/// event that raised it, by the member, or by the act.
struct LUMODEVICE_API OperationEnded {};

/// An event of a control. What the control does when it is raised is the business of the component,
/// which gives it its one handler; any number of others observe it:
///
///     const Subscription watching = button.click.observe([&] { log << "the operator sends\n"; });
///
/// Raising the event runs the handler at once, nested in whatever is running, to its end, and then
/// tells the observers that were there when it was raised. They come last so that nothing they do
/// keeps the control from its work; what a handler or an observer throws goes on when all have been
/// told. An observer may do what a host may do at any time: use the component, also in a way that
/// raises the event again, and end it, after which nobody is told any more.
///
/// What the control is part of lives until all have returned; nothing of the control is to be
/// touched after that.
template <typename... Arguments>
class Event {
 public:
  using Observer = typename Observers<Arguments...>::Observer;

  explicit Event(const Control& control) : control_(control) {}

  [[nodiscard]] Subscription observe(Observer observer) {
    return observers_.observe(std::move(observer));
  }

  void raise(Arguments... arguments) const {
    if (!handler_ && observers_.present().empty()) {
      return;
    }
    const std::shared_ptr<void> held = control_.hold();
    // A control without an owner may be gone after its handler.
    const std::weak_ptr<void> life = control_.life();
    const auto observers = observers_.present();
    EveryStep steps;
    if (handler_) {
      steps.take([&] { handler_(arguments...); });
    }
    const bool ended = life.expired();
    for (const auto& observer : observers) {
      if (!life.expired()) {
        observers_.tell(observer, steps, arguments...);
      }
    }
    try {
      steps.finish();
    } catch (const OperationEnded&) {  // nobody is left to be told
    }
    const bool nested = held.use_count() > 1;  // an operation holds the component, too
    if (!ended && life.expired() && nested) {
      throw OperationEnded();
    }
  }

 private:
  friend struct Handling;

  const Control& control_;
  std::function<void(Arguments...)> handler_;
  Observers<Arguments...> observers_;
};

}  // namespace lumodevice::toolkit
