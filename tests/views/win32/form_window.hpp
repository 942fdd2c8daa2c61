#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "lumodevice/win32/form_view.hpp"
#include "tests/views/win32/window_hand.hpp"
#include "tests/views/win32/window_shown.hpp"

namespace lumodevice::support {

/// A window of a program, with a view in it.
class FormWindow {
 public:
  explicit FormWindow(toolkit::Surface& surface)
      : top_(CreateWindowExW(0, L"#32770", L"form", WS_OVERLAPPEDWINDOW, 0, 0, 900, 700, nullptr,
                             nullptr, nullptr, nullptr)),
        view(surface, top_, [this](const std::exception_ptr& failure) {
          try {
            std::rethrow_exception(failure);
          } catch (const std::exception& exception) {
            failures += exception.what();
          }
        }) {
    const auto size = view.size();
    MoveWindow(view.window(), 0, 0, size.width, size.height, FALSE);
    ShowWindow(view.window(), SW_SHOW);
    ShowWindow(top_, SW_SHOW);
    SetForegroundWindow(top_);
    WindowHand::flush();
  }
  ~FormWindow() { DestroyWindow(top_); }
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;

  [[nodiscard]] HWND top() const { return top_; }

 private:
  HWND top_;

 public:
  /// What the handlers have thrown.
  std::string failures;
  win32::FormView view;
  WindowHand hand{view};
};

/// All controls of one type.
template <typename ControlType>
std::vector<ControlType*> all(const toolkit::Surface& surface) {
  std::vector<ControlType*> found;
  for (const auto& control : surface.controls()) {
    if (auto* const typed = dynamic_cast<ControlType*>(control.get())) {
      found.push_back(typed);
    }
  }
  EXPECT_FALSE(found.empty());
  return found;
}

}  // namespace lumodevice::support
