#pragma once

#include <string_view>

#include "lumodevice/host.hpp"
#include "lumodevice/toolkit/controls.hpp"

namespace lumodevice::link {

/// How operations wait, and what they show an operator meanwhile: always in the order that the
/// operation names. Once the component has ended, every call throws toolkit::OperationEnded.
///
///     waits.processEvents();
///     waits.waitUnits(2);  // 400 ms while Text5 holds "200"
class Waits {
 public:
  /// `unit` is the field that holds the wait unit in milliseconds.
  Waits(const Host& host, const toolkit::TextBox& unit) : host_(host), unit_(unit) {}

  void processEvents();
  void sleep(double milliseconds);
  /// Processes events once, then waits.
  void pause(double milliseconds);
  /// Waits `units` times the wait unit. A unit that is no number, or too large a one, is no wait.
  void waitUnits(double units);
  /// The wait unit in milliseconds; 0 for one that is no number, negative or no wait.
  [[nodiscard]] double unit() const;
  void showBox(std::string_view text);

  /// The component ends: whatever operations still wait end at their waits.
  void end() { ended_ = true; }

 private:
  void goOn() const;

  const Host& host_;
  const toolkit::TextBox& unit_;
  bool ended_ = false;
};

}  // namespace lumodevice::link
