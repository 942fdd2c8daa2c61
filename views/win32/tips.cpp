#include "views/win32/tips.hpp"

#include <cstdint>

#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

namespace {

constexpr int kWidestTip = 400;

TTTOOLINFOW tool(HWND parent, UINT flags, std::uintptr_t id) {
  TTTOOLINFOW info{};
  info.cbSize = TTTOOLINFOW_V1_SIZE;  // that of all versions of the common controls
  info.uFlags = flags;
  info.hwnd = parent;
  info.uId = id;
  return info;
}

/// The windows of a face that the mouse is over, each with its own tool; and one for its place
/// within the window above, which has the mouse while the face cannot be used.
template <typename Action>
void forEachTool(const Face& face, Action action) {
  const HWND window = face.handle();
  const HWND parent = GetParent(window);
  const auto id = reinterpret_cast<std::uintptr_t>(window);
  action(tool(parent, TTF_IDISHWND, id));
  const HWND part = GetWindow(window, GW_CHILD);
  if (part != nullptr && face.control().kind() == toolkit::Kind::ComboBox) {
    action(tool(window, TTF_IDISHWND, reinterpret_cast<std::uintptr_t>(part)));
  }
  TTTOOLINFOW place = tool(parent, 0, id + 1);
  GetWindowRect(window, &place.rect);
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place.rect), 2);
  action(place);
}

}  // namespace

void Tips::make(HWND view) {
  window_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"",
                            WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                            CW_USEDEFAULT, CW_USEDEFAULT, view, nullptr, thisModule(), nullptr);
  SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, kWidestTip);
}

void Tips::set(const Face& face) const {
  forget(face);
  std::wstring text = shown(face.control().look().toolTip);
  if (text.empty()) {
    return;
  }
  forEachTool(face, [&](TTTOOLINFOW info) {
    info.lpszText = text.data();
    SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&info));
  });
}

void Tips::forget(const Face& face) const {
  forEachTool(face, [this](TTTOOLINFOW info) {
    SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&info));
  });
}

void Tips::relay(const MSG& message) const {
  SendMessageW(window_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&message));
}

}  // namespace lumodevice::win32
