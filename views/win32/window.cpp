#include "views/win32/window.hpp"

#include <cstdint>
#include <stdexcept>
#include <string>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace lumodevice::win32 {

namespace {

constexpr const wchar_t* kProperty = L"LumoDevice.Window";

[[noreturn]] void refused(const char* what) {
  throw std::runtime_error(std::string("the system makes no ") + what + ": error " +
                           std::to_string(GetLastError()));
}

}  // namespace

HINSTANCE thisModule() {
  return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

WindowClass::WindowClass()
    : name_(L"LumoDevice.Form." + std::to_wstring(reinterpret_cast<std::uintptr_t>(this))) {
  WNDCLASSW settings{};
  settings.lpfnWndProc = DefWindowProcW;
  settings.hInstance = thisModule();
  settings.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  settings.lpszClassName = name_.c_str();
  if (RegisterClassW(&settings) == 0) {
    refused("window class");
  }
}

WindowClass::~WindowClass() {
  UnregisterClassW(name_.c_str(), thisModule());
}

PresentStyle::PresentStyle() {
  constexpr WORD kManifest = 2;
  ACTCTXW wanted{};
  wanted.cbSize = sizeof(wanted);
  wanted.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  wanted.hModule = thisModule();
  wanted.lpResourceName = MAKEINTRESOURCEW(kManifest);
  context_ = CreateActCtxW(&wanted);
  if (context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_) == FALSE) {
    ReleaseActCtx(context_);
    context_ = INVALID_HANDLE_VALUE;
  }
}

PresentStyle::~PresentStyle() {
  if (context_ != INVALID_HANDLE_VALUE) {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
  }
}

Window* Window::behind(HWND window) {
  return window == nullptr ? nullptr : static_cast<Window*>(GetPropW(window, kProperty));
}

void Window::make(const Shape& shape, HWND parent) {
  HWND const made = CreateWindowExW(shape.extendedStyle, shape.className, L"", shape.style, 0, 0, 0,
                                    0, parent, nullptr, thisModule(), nullptr);
  if (made == nullptr) {
    refused("window");
  }
  watch(made);
}

void Window::watch(HWND window) {
  handle_ = window;
  if (SetPropW(window, kProperty, this) == FALSE) {
    refused("window property");
  }
  original_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&procedure)));
}

void Window::destroy() {
  if (handle_ != nullptr) {
    DestroyWindow(handle_);
  }
}

std::wstring Window::text() const {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(handle_)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(
      GetWindowTextW(handle_, text.data(), static_cast<int>(text.size()))));
  return text;
}

RECT Window::client() const {
  RECT rect{};
  GetClientRect(handle_, &rect);
  return rect;
}

LRESULT CALLBACK Window::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  Window* const self = behind(window);
  if (self == nullptr) {
    return DefWindowProcW(window, message, first, second);
  }
  if (message == WM_NCDESTROY) {
    const WNDPROC original = self->original_;
    RemovePropW(window, kProperty);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original));
    self->handle_ = nullptr;
    return CallWindowProcW(original, window, message, first, second);
  }
  Keeper& keeper = self->keeper_;
  const std::shared_ptr<void> held = keeper.hold();
  try {
    if (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) {
      MSG passing{};
      passing.hwnd = window;
      passing.message = message;
      passing.wParam = first;
      passing.lParam = second;
      keeper.passes(passing);
    }
    return self->message(message, first, second);
  } catch (...) {
    keeper.failed();
    return 0;
  }
}

}  // namespace lumodevice::win32
