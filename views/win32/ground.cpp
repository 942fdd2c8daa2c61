#include "views/win32/ground.hpp"

#include <algorithm>
#include <utility>

namespace lumodevice::win32 {

namespace {

constexpr UINT kDpiChangedAfterParent = 0x02E3;  // newer than the headers need be

void fill(HDC device, HWND window, Stage& stage) {
  RECT whole{};
  GetClientRect(window, &whole);
  FillRect(device, &whole, stage.wardrobe().brush(stage.wardrobe().colours().window));
}

}  // namespace

void Canvas::make(HWND parent) {
  Window::make({stage_.className().c_str(), WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN}, parent);
}

LRESULT Canvas::message(UINT message, WPARAM first, LPARAM second) {
  if (const auto taken = handOn(stage_, message, first, second)) {
    return *taken;
  }
  if (message == WM_ERASEBKGND) {
    fill(reinterpret_cast<HDC>(first), handle(), stage_);
    return TRUE;
  }
  return original(message, first, second);
}

void Viewport::make(HWND parent) {
  // For a dialog around it the view is one control, which finds its way within by itself.
  const DWORD kind = parent == nullptr ? WS_POPUP : WS_CHILD | WS_TABSTOP;
  Window::make({stage_.className().c_str(), kind | WS_CLIPCHILDREN | WS_CLIPSIBLINGS}, parent);
}

void Viewport::setCanvas(HWND canvas, SIZE size) {
  canvas_ = canvas;
  size_ = size;
  layOut();
}

/// A bar takes room, so that the other one may be needed, too.
void Viewport::layOut() {
  if (std::exchange(layingOut_, true)) {
    return;  // the bars change the size
  }
  RECT outer{};
  GetWindowRect(handle(), &outer);
  const int wide = GetSystemMetrics(SM_CXVSCROLL);
  const int high = GetSystemMetrics(SM_CYHSCROLL);
  SIZE page{outer.right - outer.left, outer.bottom - outer.top};
  const bool down = size_.cy > page.cy || (size_.cx > page.cx && size_.cy > page.cy - high);
  page.cx -= down ? wide : 0;
  const bool across = size_.cx > page.cx;
  page.cy -= across ? high : 0;
  origin_.x = layOut(SB_HORZ, across, origin_.x, size_.cx, page.cx);
  origin_.y = layOut(SB_VERT, down, origin_.y, size_.cy, page.cy);
  SetWindowPos(canvas_, nullptr, -origin_.x, -origin_.y, size_.cx, size_.cy,
               SWP_NOZORDER | SWP_NOACTIVATE);
  layingOut_ = false;
}

LONG Viewport::layOut(int bar, bool needed, LONG origin, LONG whole, LONG page) const {
  const LONG within = needed ? std::clamp(origin, LONG{0}, std::max(LONG{0}, whole - page)) : 0;
  ShowScrollBar(handle(), bar, needed ? TRUE : FALSE);
  if (needed) {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = whole - 1;
    info.nPage = static_cast<UINT>(std::max(LONG{0}, page));
    info.nPos = within;
    SetScrollInfo(handle(), bar, &info, TRUE);
  }
  return within;
}

void Viewport::scroll(int bar, UINT how) {
  constexpr int kLine = 24;
  SCROLLINFO info{};
  info.cbSize = sizeof(info);
  info.fMask = SIF_ALL;
  GetScrollInfo(handle(), bar, &info);
  const int page = static_cast<int>(info.nPage);
  switch (how) {
    case SB_LINEUP:
      return scrollTo(bar, info.nPos - kLine);
    case SB_LINEDOWN:
      return scrollTo(bar, info.nPos + kLine);
    case SB_PAGEUP:
      return scrollTo(bar, info.nPos - page);
    case SB_PAGEDOWN:
      return scrollTo(bar, info.nPos + page);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      return scrollTo(bar, info.nTrackPos);
    case SB_TOP:
      return scrollTo(bar, 0);
    case SB_BOTTOM:
      return scrollTo(bar, info.nMax);
    default:
      return;
  }
}

void Viewport::scrollTo(int bar, int position) {
  (bar == SB_HORZ ? origin_.x : origin_.y) = position;
  layOut();
}

void Viewport::show(const RECT& part) {
  const RECT room = client();
  const auto brought = [](LONG origin, LONG begin, LONG end, LONG size) {
    return begin < origin ? begin : end > origin + size ? end - size : origin;
  };
  const POINT wanted{brought(origin_.x, part.left, part.right, room.right),
                     brought(origin_.y, part.top, part.bottom, room.bottom)};
  if (wanted.x != origin_.x || wanted.y != origin_.y) {
    origin_ = wanted;
    layOut();
  }
}

LRESULT Viewport::message(UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case kAct:
      hand_.act();
      return 0;
    case WM_SIZE:
      layOut();
      return 0;
    case WM_HSCROLL:
      scroll(SB_HORZ, LOWORD(first));
      return 0;
    case WM_VSCROLL:
      scroll(SB_VERT, LOWORD(first));
      return 0;
    case WM_MOUSEWHEEL:
      if (client().bottom < size_.cy) {
        scroll(SB_VERT, GET_WHEEL_DELTA_WPARAM(first) > 0 ? SB_LINEUP : SB_LINEDOWN);
        return 0;
      }
      break;
    case WM_ERASEBKGND:
      fill(reinterpret_cast<HDC>(first), handle(), stage_);
      return TRUE;
    case WM_SETCURSOR:
      if (hand_.busy()) {
        SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        return TRUE;
      }
      break;
    case WM_SETFOCUS:
      hand_.focused();
      return 0;
    case WM_SHOWWINDOW:
      if (first != FALSE && second == 0) {
        hand_.shown();
      }
      break;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case kDpiChangedAfterParent:
      hand_.changed();
      break;
    default:
      break;
  }
  return original(message, first, second);
}

}  // namespace lumodevice::win32
