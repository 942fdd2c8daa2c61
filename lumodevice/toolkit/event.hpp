#pragma once

#include <functional>
#include <memory>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"

namespace lumodevice::toolkit {

/// Thrown by the waits of an operation whose component was ended meanwhile; the operation ends
/// there. Caught where the operation was started: by the event that raised it, or by the member.
struct LUMODEVICE_API OperationEnded {};

/// An event of a control: at most one handler, set by the subsystem that owns the event. Raising it
/// runs the handler at once, nested in whatever is running, to its end. What the control is part of
/// lives until the handler has returned; nothing of the control is to be touched after that.
template <typename... Arguments>
class Event {
 public:
  explicit Event(const Control& control) : control_(control) {}
  void raise(Arguments... arguments) const {
    if (!handler_) {
      return;
    }
    const std::shared_ptr<void> held = control_.hold();
    try {
      handler_(arguments...);
    } catch (const OperationEnded&) {  // nobody is left to be told
    }
  }

 private:
  friend struct Handling;

  const Control& control_;
  std::function<void(Arguments...)> handler_;
};

}  // namespace lumodevice::toolkit
