#pragma once

#include <QtCore/QPointer>
#include <QtGui/QCursor>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "lumodevice/qt/form_view.hpp"
#include "lumodevice/toolkit/frames.hpp"
#include "views/qt/faces/face.hpp"

namespace lumodevice::qt {

/// What a view consists of: the canvas that is the form, and the faces of the controls on it.
class FormView::Body {
 public:
  Body(FormView& view, toolkit::Surface& surface);
  ~Body();
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;

  FailureHandler onFailure = reportFailure;

  [[nodiscard]] QWidget& canvas() const { return *canvas_; }
  /// Null when the form has ended.
  [[nodiscard]] toolkit::Surface* surface() const { return surface_; }
  [[nodiscard]] QWidget* widgetOf(const toolkit::Control& control) const;

  void draw(const toolkit::Control& control, toolkit::Property property, int item);
  /// In the font and palette that the view has now.
  void redraw();
  /// The form learns that it has come into view.
  void tellShown();
  /// The form and its controls go.
  void end();

 private:
  void make(toolkit::Control& control);
  void place(const toolkit::Control& control);
  void dressFace(Face& face);
  /// Shows what an operator gets to. What is covered is hidden, so that no key goes there.
  void uncover();
  void drawPointer(int pointer);
  void leadOn();

  FormView& view_;
  toolkit::Surface* surface_;
  Stage stage_;
  toolkit::Form* form_ = nullptr;
  std::map<const toolkit::Control*, std::unique_ptr<Face>> faces_;
  /// With all widgets, which go before their faces.
  QPointer<QWidget> canvas_;
  /// What has a pointer of its own, while all show the hourglass.
  std::vector<std::pair<QPointer<QWidget>, QCursor>> pointers_;
};

}  // namespace lumodevice::qt
