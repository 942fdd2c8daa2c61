#pragma once

#include <utility>

#include "lumodevice/toolkit/event.hpp"

namespace lumodevice::toolkit {

/// Gives an event its one handler, in place of the one before: what the control does when it is
/// used. For the component that owns the form alone; everyone else observes.
struct Handling {
  template <typename Handler, typename... Arguments>
  static void set(Event<Arguments...>& event, Handler&& handler) {
    event.handler_ = std::forward<Handler>(handler);
  }
};

template <typename Handler, typename... Arguments>
void handle(Event<Arguments...>& event, Handler&& handler) {
  Handling::set(event, std::forward<Handler>(handler));
}

}  // namespace lumodevice::toolkit
