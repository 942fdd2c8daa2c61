#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "lumodevice/link/link_fault.hpp"
#include "lumodevice/link/reports.hpp"
#include "lumodevice/toolkit/event.hpp"
#include "lumodevice/toolkit/frames.hpp"

namespace lumodevice::link {

/// True for a message that only looks: each part of it (they are separated by semicolons) is a
/// query, or chooses a channel by its number. What cannot be told apart with certainty does more.
[[nodiscard]] bool onlyLooks(std::string_view message);

/// The one place that decides what may leave the component. The links ask it for every message that
/// they are to write; whoever knows earlier that an act would be held back asks it, too, and spares
/// the waits.
class Gate {
 public:
  Gate(const toolkit::Form& panel, Reports& reports, bool observing)
      : heldBack(panel), reports_(reports), observing_(observing) {}

  /// Told of each message that was held back, without its line end.
  toolkit::Event<const std::string&> heldBack;

  [[nodiscard]] bool observing() const { return observing_; }
  void observe(bool on) { observing_ = on; }

  /// True where the message must not leave; that is told then.
  [[nodiscard]] bool holdsBack(std::string_view message);
  /// The same for a command that takes a block of data along: that never only looks.
  [[nodiscard]] bool holdsBackBlock(std::string_view command);

  /// For who writes: throws LinkFault(HeldBack) instead.
  void pass(std::string_view message) { refuse(holdsBack(message)); }
  void passBlock(std::string_view command) { refuse(holdsBackBlock(command)); }

  /// While a read-back sets a control that acts when it is set. What it would send is what the
  /// instrument has just said; where the component observes, the control does not act at all.
  class Echo {
   public:
    explicit Echo(Gate& gate) : gate_(gate), before_(gate.echo_) { gate_.echo_ = gate.observing_; }
    ~Echo() { gate_.echo_ = before_; }
    Echo(const Echo&) = delete;
    Echo& operator=(const Echo&) = delete;

   private:
    Gate& gate_;
    bool before_;
  };
  /// True once for the control that is being set.
  [[nodiscard]] bool takeEcho() { return std::exchange(echo_, false); }

 private:
  void tell(std::string_view message);
  static void refuse(bool heldBack) {
    if (heldBack) {
      throw LinkFault(FailureKind::HeldBack);
    }
  }

  Reports& reports_;
  bool observing_;
  bool echo_ = false;
};

}  // namespace lumodevice::link
