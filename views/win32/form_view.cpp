#include "lumodevice/win32/form_view.hpp"

#include <utility>

#include "views/win32/body.hpp"

namespace lumodevice::win32 {

namespace {

/// Draws a window and those in it, from the back to the front, at its place in the device.
void printWindow(HDC device, HWND window, POINT at) {
  const int before = SaveDC(device);
  RECT whole{};
  GetWindowRect(window, &whole);
  SetViewportOrgEx(device, at.x, at.y, nullptr);
  IntersectClipRect(device, 0, 0, whole.right - whole.left, whole.bottom - whole.top);
  SendMessageW(window, WM_PRINT, reinterpret_cast<WPARAM>(device),
               PRF_NONCLIENT | PRF_CLIENT | PRF_ERASEBKGND);
  const HWND front = GetWindow(window, GW_CHILD);
  for (HWND child = front == nullptr ? nullptr : GetWindow(front, GW_HWNDLAST); child != nullptr;
       child = GetWindow(child, GW_HWNDPREV)) {
    if ((GetWindowLongPtrW(child, GWL_STYLE) & WS_VISIBLE) != 0) {
      RECT place{};
      GetWindowRect(child, &place);
      printWindow(device, child, {at.x + place.left - whole.left, at.y + place.top - whole.top});
    }
  }
  RestoreDC(device, before);
}

}  // namespace

FormView::FormView(toolkit::Surface& surface, Window parent, FailureHandler onFailure)
    : body_(std::make_shared<Body>(surface, std::move(onFailure))) {
  body_->open(parent);
  surface.attach(*this);
}

FormView::~FormView() {
  if (body_->surface() != nullptr) {
    body_->surface()->detach(*this);
  }
  body_->close();
}

FormView::Window FormView::window() const {
  return body_->window();
}

FormView::Window FormView::windowOf(const toolkit::Control& control) const {
  return body_->windowOf(control);
}

FormView::Size FormView::size() const {
  return body_->size();
}

bool FormView::translate(const tagMSG& message) {
  const bool here =
      body_->surface() != nullptr && body_->window() != nullptr &&
      (message.hwnd == body_->window() || IsChild(body_->window(), message.hwnd) != FALSE);
  const std::shared_ptr<Body> held = body_;
  return here &&
         held->keyboard().take(message.message, message.wParam, held->present(), held->tabLeaves);
}

void FormView::setTabLeaves(bool leaves) {
  body_->tabLeaves = leaves;
}

bool FormView::focusEnd(bool first) {
  return body_->surface() != nullptr && body_->keyboard().focusEnd(first);
}

bool FormView::pressMnemonic(wchar_t letter) {
  return body_->surface() != nullptr && body_->keyboard().pressLetter(letter, body_->present());
}

std::wstring FormView::mnemonics() const {
  return body_->surface() == nullptr ? std::wstring() : body_->keyboard().letters();
}

void FormView::setFocusHandler(std::function<void(bool inside)> onFocus) {
  body_->onFocus = std::move(onFocus);
}

void FormView::print(HDC device, const RECT& place) {
  const Size whole = size();
  if (body_->window() == nullptr || whole.width == 0 || whole.height == 0) {
    return;
  }
  const HDC memory = CreateCompatibleDC(device);
  const Drawn<HBITMAP> bitmap(CreateCompatibleBitmap(device, whole.width, whole.height));
  const HGDIOBJ before = SelectObject(memory, bitmap.get());
  printWindow(memory, body_->canvas(), {0, 0});
  SetStretchBltMode(device, HALFTONE);
  SetBrushOrgEx(device, 0, 0, nullptr);
  StretchBlt(device, place.left, place.top, place.right - place.left, place.bottom - place.top,
             memory, 0, 0, whole.width, whole.height, SRCCOPY);
  SelectObject(memory, before);
  DeleteDC(memory);
}

void FormView::changed(const toolkit::Control& control, toolkit::Property property, int item) {
  const std::shared_ptr<Body> held = body_;
  held->draw(control, property, item);
}

void FormView::ended() noexcept {
  body_->end();
}

}  // namespace lumodevice::win32
