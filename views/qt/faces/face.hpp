#pragma once

#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

#include "lumodevice/toolkit/controls.hpp"
#include "views/qt/scale.hpp"

namespace lumodevice::qt {

/// What the faces of one view share.
class Stage {
 public:
  explicit Stage(QWidget& view) : view_(view), scale_(view) {}

  [[nodiscard]] const Scale& scale() const { return scale_; }
  void setScale(const Scale& scale) { scale_ = scale; }

  /// Has `deed` done for the control when Qt has returned from the widget, unless the form has gone
  /// by then.
  void act(const toolkit::Control& control, std::function<void()> deed) const;

 private:
  QWidget& view_;
  Scale scale_;
};

/// A control as a widget. Qt owns the widget, which goes before its face.
class Face {
 public:
  virtual ~Face() = default;
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  [[nodiscard]] QWidget& widget() const { return widget_; }
  [[nodiscard]] const toolkit::Control& control() const { return control_; }

  /// Draws what this kind of control alone has.
  virtual void draw(toolkit::Property property, int item) = 0;
  /// Draws all of that, in this size and look.
  virtual void drawAll() = 0;

 protected:
  Face(const toolkit::Control& control, QWidget& widget) : control_(control), widget_(widget) {}

 private:
  const toolkit::Control& control_;
  QWidget& widget_;
};

/// Each makes the face of a control within the widget of its container.
std::unique_ptr<Face> makeFrame(Stage& stage, toolkit::Frame& frame, QWidget& parent);
std::unique_ptr<Face> makeLabel(Stage& stage, toolkit::Label& label, QWidget& parent);
std::unique_ptr<Face> makeButton(Stage& stage, toolkit::CommandButton& button, QWidget& parent);
std::unique_ptr<Face> makeCheckBox(Stage& stage, toolkit::CheckBox& box, QWidget& parent);
std::unique_ptr<Face> makeOption(Stage& stage, toolkit::OptionButton& option, QWidget& parent);
std::unique_ptr<Face> makeTextBox(Stage& stage, toolkit::TextBox& box, QWidget& parent);
std::unique_ptr<Face> makeComboBox(Stage& stage, toolkit::ComboBox& box, QWidget& parent);
std::unique_ptr<Face> makeListBox(Stage& stage, toolkit::ListBox& list, QWidget& parent);
std::unique_ptr<Face> makePicture(Stage& stage, toolkit::Pictured& picture, QWidget& parent);

/// The face of a control of whatever kind; null for one that is not seen. The form has none: it is
/// the view.
std::unique_ptr<Face> makeFace(Stage& stage, toolkit::Control& control, QWidget& parent);

}  // namespace lumodevice::qt
