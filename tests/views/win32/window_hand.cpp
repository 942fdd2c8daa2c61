#include "tests/views/win32/window_hand.hpp"

#include "views/win32/texts.hpp"

namespace lumodevice::support {

namespace {

LPARAM at(POINT place) {
  return MAKELPARAM(place.x, place.y);
}

POINT middle(const RECT& rect) {
  return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

POINT middleOf(HWND window) {
  RECT rect{};
  GetClientRect(window, &rect);
  return middle(rect);
}

COMBOBOXINFO partsOf(HWND combo) {
  COMBOBOXINFO parts{};
  parts.cbSize = sizeof(parts);
  GetComboBoxInfo(combo, &parts);
  return parts;
}

POINT itemOf(HWND list, int index) {
  RECT rect{};
  SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&rect));
  return middle(rect);
}

}  // namespace

void WindowHand::flush() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

bool WindowHand::canUse(const toolkit::Control& control) const {
  const HWND window = view_.windowOf(control);
  return window != nullptr && IsWindowVisible(window) != FALSE && IsWindowEnabled(window) != FALSE;
}

HWND WindowHand::keyboardOf(const toolkit::Control& control) const {
  const HWND window = view_.windowOf(control);
  SetFocus(window);
  return IsChild(window, GetFocus()) != FALSE ? GetFocus() : window;
}

bool WindowHand::click(const toolkit::Control& control) {
  if (!canUse(control)) {
    return false;
  }
  const HWND window = view_.windowOf(control);
  const LPARAM place = at(middleOf(window));
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
  SendMessageW(window, WM_LBUTTONUP, 0, place);
  flush();
  return true;
}

bool WindowHand::type(const toolkit::Control& control, std::string_view text) {
  if (!canUse(control)) {
    return false;
  }
  const HWND window = keyboardOf(control);
  if ((GetWindowLongPtrW(window, GWL_STYLE) & ES_READONLY) != 0) {
    return false;
  }
  SendMessageW(window, EM_SETSEL, 0, -1);
  for (const wchar_t letter : win32::shown(text)) {
    SendMessageW(window, WM_CHAR, letter, 1);
  }
  flush();
  return true;
}

bool WindowHand::press(const toolkit::Control& control, WPARAM key) {
  if (!canUse(control)) {
    return false;
  }
  const HWND window = keyboardOf(control);
  SendMessageW(window, WM_KEYDOWN, key, 1);
  SendMessageW(window, WM_KEYUP, key, 1);
  flush();
  return true;
}

bool WindowHand::select(const toolkit::ListControl& list, int index) {
  if (!canUse(list)) {
    return false;
  }
  HWND window = view_.windowOf(list);
  SetFocus(window);
  if (list.kind() == toolkit::Kind::ComboBox) {
    SendMessageW(window, CB_SHOWDROPDOWN, TRUE, 0);
    window = partsOf(window).hwndList;
  }
  const LPARAM place = at(itemOf(window, index));
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
  SendMessageW(window, WM_LBUTTONUP, 0, place);
  flush();
  return true;
}

bool WindowHand::drag(const toolkit::ListBox& from, int index, const toolkit::ListBox& onto) {
  if (!canUse(from)) {
    return false;
  }
  const HWND window = view_.windowOf(from);
  const POINT begin = itemOf(window, index);
  POINT end = middleOf(view_.windowOf(onto));
  MapWindowPoints(view_.windowOf(onto), window, &end, 1);
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, at(begin));
  constexpr int kSteps = 5;
  for (int step = 1; step <= kSteps; ++step) {
    const POINT place{begin.x + (end.x - begin.x) * step / kSteps,
                      begin.y + (end.y - begin.y) * step / kSteps};
    SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, at(place));
    flush();
  }
  SendMessageW(window, WM_LBUTTONUP, 0, at(end));
  flush();
  return true;
}

}  // namespace lumodevice::support
