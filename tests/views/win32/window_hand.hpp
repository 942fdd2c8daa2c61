#pragma once

#include <string_view>

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/win32/form_view.hpp"
#include "views/win32/windows.hpp"

namespace lumodevice::support {

/// An operator at the windows of a view: sends them the messages of a mouse and a keyboard, and
/// then has all that is on its way done. What he cannot get at he does nothing to; then the act is
/// false.
class WindowHand {
 public:
  explicit WindowHand(win32::FormView& view) : view_(view) {}

  bool click(const toolkit::Control& control);
  /// In place of what stands there.
  bool type(const toolkit::Control& control, std::string_view text);
  bool press(const toolkit::Control& control, WPARAM key);
  bool select(const toolkit::ListControl& list, int index);
  /// An item of a list to another one; the mouse moves in steps.
  bool drag(const toolkit::ListBox& from, int index, const toolkit::ListBox& onto);

  /// Does all that is on its way.
  static void flush();

 private:
  [[nodiscard]] bool canUse(const toolkit::Control& control) const;
  /// The window that has the keyboard for it.
  [[nodiscard]] HWND keyboardOf(const toolkit::Control& control) const;

  win32::FormView& view_;
};

}  // namespace lumodevice::support
