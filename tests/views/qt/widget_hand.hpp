#pragma once

#include <QtWidgets/QWidget>
#include <string_view>

#include "lumodevice/qt/form_view.hpp"
#include "lumodevice/toolkit/controls.hpp"

namespace lumodevice::support {

/// The operator's acts on the widgets of a view, by mouse and keyboard, as toolkit/hand.hpp has
/// them on the controls. Each returns when its act has been done; false when the control cannot be
/// used. Throws std::logic_error for a control that cannot be seen.
class WidgetHand {
 public:
  explicit WidgetHand(qt::FormView& view) : view_(view) {}

  bool click(const toolkit::Control& control);
  bool type(const toolkit::Control& control, std::string_view text);
  bool select(const toolkit::Control& control, int index);
  bool press(const toolkit::Control& control, toolkit::Key key);
  bool drag(const toolkit::ListBox& from, std::string_view text, const toolkit::ListBox& onto);

  /// What has been done to widgets reaches the controls.
  static void flush();

 private:
  [[nodiscard]] QWidget& widget(const toolkit::Control& control) const;

  qt::FormView& view_;
};

}  // namespace lumodevice::support
