#include "views/win32/body.hpp"

#include <algorithm>
#include <utility>

#include "lumodevice/toolkit/drawing.hpp"
#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

using toolkit::Control;
using toolkit::Property;

FormView::Body::Body(toolkit::Surface& surface, FailureHandler onFailure)
    : onFailure_(std::move(onFailure)),
      surface_(&surface),
      viewport_(*this, {.act = [this] { actNext(); },
                        .shown =
                            [this] {
                              if (form_ != nullptr) {
                                act(*form_, [form = form_] { form->show.raise(); });
                              }
                            },
                        .focused =
                            [this] {
                              if (last_ != nullptr && isOpen() && last_->isStop()) {
                                last_->arrive();
                              } else if (!isOpen() || !keyboard_.focusEnd(true)) {
                                SetFocus(canvas());
                              }
                            },
                        .changed = [this] { redraw(); },
                        .busy =
                            [this] {
                              return form_ != nullptr &&
                                     form_->mousePointer() == toolkit::kHourglass;
                            }}),
      canvas_(*this) {}

void FormView::Body::open(HWND parent) {
  const PresentStyle style;
  viewport_.make(parent);
  setScale(Scale(window()));
  canvas_.make(window());
  tips_.make(window());
  for (const auto& control : surface_->controls()) {
    if (control->kind() == toolkit::Kind::Form) {
      form_ = dynamic_cast<toolkit::Form*>(control.get());
    } else if (auto face = makeFace(*this, *control)) {
      face->make(above(*control));
      byControl_.emplace(control.get(), face.get());
      faces_.push_back(std::move(face));
    }
  }
  if (form_ != nullptr) {
    SetWindowTextW(window(), shown(form_->look().accessibleName).c_str());
  }
  redraw();
  arrange();
  uncover();
}

void FormView::Body::close() {
  surface_ = nullptr;
  form_ = nullptr;
  deeds_.clear();
  onFocus = nullptr;
  if (window() != nullptr) {
    DestroyWindow(window());
  }
}

Face* FormView::Body::faceOf(const Control& control) const {
  const auto found = byControl_.find(&control);
  return found == byControl_.end() ? nullptr : found->second;
}

HWND FormView::Body::above(const Control& control) const {
  const Face* const around =
      control.container() == nullptr ? nullptr : faceOf(*control.container());
  return around == nullptr ? canvas() : around->handle();
}

HWND FormView::Body::windowOf(const Control& control) const {
  if (!isOpen()) {
    return nullptr;
  }
  if (&control == form_) {
    return canvas();
  }
  const Face* const face = faceOf(control);
  return face == nullptr ? nullptr : face->handle();
}

FormView::Size FormView::Body::size() const {
  if (form_ == nullptr) {
    return {};
  }
  const RECT whole = scale().pixels(form_->place());
  return {whole.right - whole.left, whole.bottom - whole.top};
}

void FormView::Body::draw(const Control& control, Property property, int item) {
  Face* const face = faceOf(control);
  if (!isOpen() || (face == nullptr && &control != form_)) {
    return;
  }
  switch (property) {
    case Property::Enabled:
    case Property::Visible:
      uncover();
      return;
    case Property::Place:
      if (face == nullptr) {
        redraw();
      } else {
        place(*face);
        face->drawAll();
      }
      uncover();
      return;
    case Property::ZOrder:
      if (face != nullptr) {
        SetWindowPos(face->handle(), HWND_TOP, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        uncover();
      }
      return;
    case Property::MousePointer:
      drawPointer();
      return;
    case Property::Picture:
      uncover();
      break;
    default:
      break;
  }
  if (face == nullptr) {
    return;
  }
  if (property != Property::Look) {
    face->draw(property, item);
  } else if (face->isAsMade()) {
    dress(*face);
  } else {
    remake(*face);
  }
}

void FormView::Body::redraw() {
  if (!isOpen()) {
    return;
  }
  setScale(Scale(window()));
  const Size whole = size();
  viewport_.setCanvas(canvas(), {whole.width, whole.height});
  for (const auto& face : faces_) {
    face->dress();
    place(*face);
    face->drawAll();
  }
  RedrawWindow(window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void FormView::Body::dress(Face& face) {
  face.dress();
  place(face);
  face.drawAll();
  face.repaint();
}

void FormView::Body::place(Face& face) {
  face.place(scale().pixels(face.control().place()));
  tips_.set(face);
}

void FormView::Body::remake(Face& face) {
  tips_.forget(face);
  const bool focused = Stage::faceOf(GetFocus()) == &face;
  {
    const PresentStyle style;
    face.make(above(face.control()));
  }
  dress(face);
  arrange();
  uncover();
  if (focused && face.isStop()) {
    face.arrive();
  }
}

void FormView::Body::arrange() {
  std::vector<Face*> fromTheBack;
  for (const auto& face : faces_) {
    fromTheBack.push_back(face.get());
  }
  std::stable_sort(fromTheBack.begin(), fromTheBack.end(), [](const Face* a, const Face* b) {
    return a->control().zOrder() < b->control().zOrder();
  });
  for (const Face* face : fromTheBack) {
    SetWindowPos(face->handle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  }
}

void FormView::Body::uncover() {
  for (const auto& face : faces_) {
    const Control& control = face->control();
    const bool seen = toolkit::seen(*surface_, control);
    const bool usable = control.usable();
    if (!seen || !usable) {
      rest(*face);
    }
    if ((IsWindowEnabled(face->handle()) != FALSE) != usable) {
      EnableWindow(face->handle(), usable ? TRUE : FALSE);
    }
    const bool isShown = (GetWindowLongPtrW(face->handle(), GWL_STYLE) & WS_VISIBLE) != 0;
    if (isShown != seen) {
      ShowWindow(face->handle(), seen ? SW_SHOWNA : SW_HIDE);
    }
  }
  if (resting_ != nullptr && GetFocus() == canvas() && resting_->isStop()) {
    std::exchange(resting_, nullptr)->arrive();
  }
}

/// The system would leave the focus where no key does anything.
void FormView::Body::rest(Face& face) {
  const HWND focus = GetFocus();
  if (focus != nullptr && focus != canvas() && faceOf(face.control()) == Stage::faceOf(focus)) {
    resting_ = &face;
    SetFocus(canvas());
  }
}

void FormView::Body::drawPointer() const {
  POINT at{};
  GetCursorPos(&at);
  if (isWithin(WindowFromPoint(at))) {
    SetCursor(
        LoadCursorW(nullptr, form_->mousePointer() == toolkit::kHourglass ? IDC_WAIT : IDC_ARROW));
  }
}

bool FormView::Body::isWithin(HWND window) const {
  return window != nullptr && this->window() != nullptr &&
         (window == this->window() || IsChild(this->window(), window) != FALSE);
}

void FormView::Body::end() {
  surface_ = nullptr;
  form_ = nullptr;
  dragging_.reset();
  // What it showed is true no longer.
  for (const auto& face : faces_) {
    if (face->handle() != nullptr) {
      DestroyWindow(face->handle());
    }
  }
  EnableWindow(canvas(), FALSE);
}

void FormView::Body::act(const Control& control, Deed deed) {
  deeds_.push_back([life = control.life(), deed = std::move(deed)] {
    if (!life.expired()) {
      deed();
    }
  });
  viewport_.post();
}

void FormView::Body::actNext() {
  if (!deeds_.empty()) {
    const Deed deed = std::move(deeds_.front());
    deeds_.pop_front();
    deed();
  }
}

Face* FormView::Body::present() const {
  const HWND focus = GetFocus();
  if (!isWithin(focus)) {
    return nullptr;
  }
  Face* const face = Stage::faceOf(focus);
  return face != nullptr ? face : resting_;
}

bool FormView::Body::key(UINT message, WPARAM key) {
  return isOpen() && keyboard_.take(message, key, present(), false);
}

void FormView::Body::focusArrived() {
  if (!isOpen()) {
    return;
  }
  const HWND focus = GetFocus();
  if (Face* const face = Stage::faceOf(focus); face != nullptr && isWithin(focus)) {
    last_ = face;
    RECT part{};
    GetWindowRect(face->handle(), &part);
    MapWindowPoints(nullptr, canvas(), reinterpret_cast<POINT*>(&part), 2);
    viewport_.show(part);
  }
  if (onFocus) {
    onFocus(true);
  }
}

void FormView::Body::focusLeft(HWND toward) {
  if (onFocus && !isWithin(toward)) {
    onFocus(false);
  }
}

}  // namespace lumodevice::win32
