#include "views/win32/faces/face.hpp"

#include <utility>

#include "lumodevice/toolkit/drawing.hpp"
#include "lumodevice/toolkit/hand.hpp"

namespace lumodevice::win32 {

void Stage::setScale(const Scale& scale) {
  scale_ = scale;
  wornOut_ = std::exchange(wardrobe_, std::make_unique<Wardrobe>(scale));
}

Face* Stage::faceOf(HWND window) {
  for (HWND each = window; each != nullptr; each = GetAncestor(each, GA_PARENT)) {
    if (auto* const face = dynamic_cast<Face*>(Window::behind(each))) {
      return face;
    }
  }
  return nullptr;
}

void Face::make(HWND parent) {
  destroy();
  made_ = shape();
  Window::make(*made_, parent);
  made();
}

void Face::dress() {
  send(WM_SETFONT, reinterpret_cast<WPARAM>(font()), TRUE);
}

void Face::place(const RECT& place) {
  SetWindowPos(handle(), nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

bool Face::isWithinReach() const {
  return IsWindowEnabled(handle()) != FALSE && toolkit::seen(control_.surface(), control_);
}

HBRUSH Face::paint(HDC device) {
  SetTextColor(device, stage_.wardrobe().letters(control_.look().colorRole));
  SetBkColor(device, ground());
  return stage_.wardrobe().brush(ground());
}

HFONT Face::font() const {
  const toolkit::Look& look = control_.look();
  return stage_.wardrobe().font(stage_.scale().letters(look.fontSize), look.bold);
}

COLORREF Face::ground() const {
  return control_.container() == nullptr ? stage_.wardrobe().colours().window
                                         : groundWithin(stage_, *control_.container());
}

LRESULT Face::message(UINT message, WPARAM first, LPARAM second) {
  if (const auto taken = inputTo(stage_, message, first)) {
    return *taken;
  }
  if (message == WM_SETFOCUS || message == WM_KILLFOCUS) {
    const LRESULT result = original(message, first, second);
    if (message == WM_SETFOCUS) {
      stage_.focusArrived();
    } else {
      stage_.focusLeft(reinterpret_cast<HWND>(first));
    }
    return result;
  }
  if (message == WM_GETDLGCODE) {
    return original(message, first, second) | DLGC_WANTALLKEYS;
  }
  return original(message, first, second);
}

COLORREF groundWithin(const Stage& stage, const toolkit::Container& container) {
  const Wardrobe::Colours& colours = stage.wardrobe().colours();
  return container.kind() == toolkit::Kind::Frame && !toolkit::isPage(container) ? colours.card
                                                                                 : colours.window;
}

std::optional<LRESULT> handOn(Stage& stage, UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_COMMAND:
      if (auto* const face = dynamic_cast<Face*>(Window::behind(reinterpret_cast<HWND>(second)))) {
        face->notified(HIWORD(first));
        return 0;
      }
      return std::nullopt;
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(second);
      if (auto* const face = Stage::faceOf(item.hwndItem)) {
        face->drawItem(item);
        return TRUE;
      }
      return std::nullopt;
    }
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORLISTBOX:
      if (auto* const face = Stage::faceOf(reinterpret_cast<HWND>(second))) {
        return reinterpret_cast<LRESULT>(face->paint(reinterpret_cast<HDC>(first)));
      }
      return std::nullopt;
    case WM_KEYDOWN:
    case WM_SYSCHAR:
      if (stage.key(message, first)) {
        return 0;
      }
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

std::optional<LRESULT> inputTo(Stage& stage, UINT message, WPARAM first) {
  constexpr WPARAM kTab = L'\t';
  const bool key = message == WM_KEYDOWN || message == WM_SYSCHAR;
  // What the key has done already comes once more as a letter.
  const bool letter = message == WM_CHAR && first == kTab;
  return letter || (key && stage.key(message, first)) ? std::optional<LRESULT>(0) : std::nullopt;
}

std::optional<toolkit::Key> fieldKey(WPARAM key) {
  for (const int held : {VK_SHIFT, VK_CONTROL, VK_MENU}) {
    if (GetKeyState(held) < 0) {
      return std::nullopt;
    }
  }
  switch (key) {
    case VK_RETURN:
      return toolkit::Key::Enter;
    case VK_UP:
      return toolkit::Key::Up;
    case VK_DOWN:
      return toolkit::Key::Down;
    default:
      return std::nullopt;
  }
}

bool clickEntered(Stage& stage, const toolkit::Control& field) {
  toolkit::Control* const button = toolkit::clickedByEnter(field);
  if (button == nullptr) {
    return false;
  }
  stage.act(field, [button] { toolkit::hand::click(*button); });
  return true;
}

std::unique_ptr<Face> makeFace(Stage& stage, toolkit::Control& control) {
  using toolkit::Kind;
  switch (control.kind()) {
    case Kind::Form:
    case Kind::Timer:
      return nullptr;
    case Kind::Frame:
      return makeFrame(stage, dynamic_cast<toolkit::Frame&>(control));
    case Kind::Label:
      return makeLabel(stage, dynamic_cast<toolkit::Label&>(control));
    case Kind::TextBox:
      return makeTextBox(stage, dynamic_cast<toolkit::TextBox&>(control));
    case Kind::ComboBox:
      return makeComboBox(stage, dynamic_cast<toolkit::ComboBox&>(control));
    case Kind::ListBox:
      return makeListBox(stage, dynamic_cast<toolkit::ListBox&>(control));
    case Kind::CheckBox:
      return makeCheckBox(stage, dynamic_cast<toolkit::CheckBox&>(control));
    case Kind::OptionButton:
      return makeOption(stage, dynamic_cast<toolkit::OptionButton&>(control));
    case Kind::CommandButton:
      return makeButton(stage, dynamic_cast<toolkit::CommandButton&>(control));
    case Kind::PictureBox:
    case Kind::Image:
      return makePicture(stage, dynamic_cast<toolkit::Pictured&>(control));
  }
  return nullptr;
}

}  // namespace lumodevice::win32
