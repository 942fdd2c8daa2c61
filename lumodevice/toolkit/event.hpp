#pragma once

#include <functional>
#include <utility>

namespace lumodevice::toolkit {

/// An event of a control: at most one handler, set by the subsystem that owns the event. Raising it
/// runs the handler at once, nested in whatever is running, to its end.
template <typename... Arguments>
class Event {
 public:
  void handle(std::function<void(Arguments...)> handler) { handler_ = std::move(handler); }
  [[nodiscard]] bool handled() const { return static_cast<bool>(handler_); }
  void raise(Arguments... arguments) const {
    if (handler_) {
      handler_(arguments...);
    }
  }

 private:
  std::function<void(Arguments...)> handler_;
};

}  // namespace lumodevice::toolkit
