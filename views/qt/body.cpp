#include "views/qt/body.hpp"

#include <QtWidgets/QLabel>

#include "lumodevice/toolkit/drawing.hpp"
#include "views/qt/dress.hpp"
#include "views/qt/texts.hpp"

namespace lumodevice::qt {

using toolkit::Control;
using toolkit::Property;

FormView::Body::Body(FormView& view, toolkit::Surface& surface)
    : view_(view), surface_(&surface), stage_(view), canvas_(new QWidget()) {
  for (const auto& control : surface.controls()) {
    make(*control);
  }
  redraw();
  leadOn();
  uncover();
  if (form_ != nullptr) {
    canvas_->setEnabled(form_->enabled());
    drawPointer(form_->mousePointer());
  }
}

FormView::Body::~Body() {
  delete canvas_;
}

void FormView::Body::make(Control& control) {
  if (control.kind() == toolkit::Kind::Form) {
    form_ = dynamic_cast<toolkit::Form*>(&control);
    return;
  }
  QWidget* const around = control.container() == nullptr ? nullptr : widgetOf(*control.container());
  std::unique_ptr<Face> face = makeFace(stage_, control, around != nullptr ? *around : *canvas_);
  if (!face) {
    return;
  }
  face->widget().setObjectName(shown(control.fullName()));
  face->widget().setEnabled(control.enabled());
  faces_.emplace(&control, std::move(face));
}

QWidget* FormView::Body::widgetOf(const Control& control) const {
  if (surface_ == nullptr) {
    return nullptr;
  }
  if (&control == form_) {
    return canvas_;
  }
  const auto found = faces_.find(&control);
  return found == faces_.end() ? nullptr : &found->second->widget();
}

void FormView::Body::draw(const Control& control, Property property, int item) {
  QWidget* const widget = widgetOf(control);
  if (widget == nullptr) {
    return;
  }
  switch (property) {
    case Property::Enabled:
      widget->setEnabled(control.enabled());
      return;
    case Property::Visible:
      uncover();
      return;
    case Property::Place:
      place(control);
      uncover();
      return;
    case Property::ZOrder:
      widget->raise();
      uncover();
      return;
    case Property::MousePointer:
      drawPointer(form_->mousePointer());
      return;
    case Property::Picture:
      uncover();
      break;
    default:
      break;
  }
  if (const auto face = faces_.find(&control); face != faces_.end()) {
    if (property == Property::Look) {
      dressFace(*face->second);
    } else {
      face->second->draw(property, item);
    }
  }
}

void FormView::Body::redraw() {
  if (surface_ == nullptr) {
    return;
  }
  stage_.setScale(Scale(view_));
  if (form_ != nullptr) {
    place(*form_);
    canvas_->setAccessibleName(shown(form_->look().accessibleName));
  }
  for (const auto& [control, face] : faces_) {
    dress(face->widget(), control->look(), stage_.scale(), view_.palette());
    place(*control);
  }
}

void FormView::Body::place(const Control& control) {
  QWidget& widget = *widgetOf(control);
  if (&control == form_) {
    widget.resize(stage_.scale().pixels(control.place()).size());
    return;
  }
  widget.setGeometry(stage_.scale().pixels(control.place()));
  faces_.at(&control)->drawAll();
}

void FormView::Body::dressFace(Face& face) {
  dress(face.widget(), face.control().look(), stage_.scale(), view_.palette());
  face.drawAll();
}

void FormView::Body::uncover() {
  for (const auto& [control, face] : faces_) {
    face->widget().setVisible(toolkit::seen(*surface_, *control));
  }
}

void FormView::Body::drawPointer(int pointer) {
  for (const auto& [widget, cursor] : std::exchange(pointers_, {})) {
    if (widget) {
      widget->setCursor(cursor);
    }
  }
  if (pointer != toolkit::kHourglass) {
    canvas_->unsetCursor();
    return;
  }
  canvas_->setCursor(Qt::WaitCursor);
  for (QWidget* const widget : canvas_->findChildren<QWidget*>()) {
    if (widget->testAttribute(Qt::WA_SetCursor)) {
      pointers_.emplace_back(widget, widget->cursor());
      widget->setCursor(Qt::WaitCursor);
    }
  }
}

/// The letter of a label goes to the next control that takes the keyboard.
void FormView::Body::leadOn() {
  QLabel* leading = nullptr;
  for (const auto& control : surface_->controls()) {
    QWidget* const widget = widgetOf(*control);
    if (widget == nullptr || control.get() == form_) {
      continue;
    }
    if (auto* const label = dynamic_cast<QLabel*>(widget)) {
      leading = label;
    } else if (leading != nullptr && widget->focusPolicy() != Qt::NoFocus) {
      leading->setBuddy(widget);
      leading = nullptr;
    }
  }
}

void FormView::Body::tellShown() {
  if (form_ != nullptr) {
    stage_.act(*form_, [form = form_] { form->show.raise(); });
  }
}

void FormView::Body::end() {
  surface_ = nullptr;
  form_ = nullptr;
  canvas_->setEnabled(false);
  drawPointer(0);
}

}  // namespace lumodevice::qt
