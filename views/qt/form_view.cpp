#include "lumodevice/qt/form_view.hpp"

#include <QtGui/QShowEvent>
#include <utility>

#include "views/qt/act.hpp"
#include "views/qt/body.hpp"

namespace lumodevice::qt {

FormView::FormView(toolkit::Surface& surface, QWidget* parent)
    : QScrollArea(parent), body_(std::make_unique<Body>(*this, surface)) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidget(&body_->canvas());
  setWindowTitle(body_->canvas().accessibleName());
  viewport()->setAutoFillBackground(false);
  body_->canvas().setAutoFillBackground(false);
  surface.attach(*this);
}

FormView::~FormView() {
  if (body_->surface() != nullptr) {
    body_->surface()->detach(*this);
  }
}

QWidget* FormView::widgetOf(const toolkit::Control& control) const {
  return body_->widgetOf(control);
}

void FormView::setFailureHandler(FailureHandler onFailure) {
  body_->onFailure = std::move(onFailure);
}

QSize FormView::sizeHint() const {
  return body_->canvas().size();
}

bool FormView::event(QEvent* event) {
  if (event->type() == Act::kind()) {
    const FailureHandler onFailure = body_->onFailure;  // the view may go within the act
    static_cast<Act*>(event)->run(onFailure);
    return true;
  }
  return QScrollArea::event(event);
}

void FormView::changeEvent(QEvent* event) {
  QScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
      event->type() == QEvent::StyleChange) {
    body_->redraw();
    updateGeometry();
  }
}

void FormView::showEvent(QShowEvent* event) {
  QScrollArea::showEvent(event);
  if (!event->spontaneous()) {
    body_->tellShown();
  }
}

void FormView::changed(const toolkit::Control& control, toolkit::Property property, int item) {
  body_->draw(control, property, item);
}

void FormView::ended() noexcept {
  body_->end();
}

}  // namespace lumodevice::qt
