#pragma once

#include <memory>
#include <string>

#include "views/win32/windows.hpp"

namespace lumodevice::win32 {

class Window;

/// What the windows of one view need of it, whatever they are.
class Keeper {
 public:
  virtual ~Keeper() = default;
  /// Keeps the view's windows alive, for who has one of them on the stack.
  [[nodiscard]] virtual std::shared_ptr<void> hold() = 0;
  /// Hands on the exception that is being handled.
  virtual void failed() noexcept = 0;
  /// Mouse messages on their way to a window, for tool tips.
  virtual void passes(const MSG& message) = 0;
  /// The name of the class of windows that are drawn here.
  [[nodiscard]] virtual const std::wstring& className() const = 0;
};

/// A window of the system, of whatever class, that has its messages looked at here first.
class Window {
 public:
  virtual ~Window() { destroy(); }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  /// Null when it has been destroyed, perhaps with the window above it.
  [[nodiscard]] HWND handle() const { return handle_; }
  /// The object whose window it is; null for a window of somebody else.
  [[nodiscard]] static Window* behind(HWND window);

  [[nodiscard]] std::wstring text() const;
  [[nodiscard]] RECT client() const;
  void repaint() const { InvalidateRect(handle_, nullptr, TRUE); }

 protected:
  explicit Window(Keeper& keeper) : keeper_(keeper) {}

  /// What a window is made as.
  struct Shape {
    const wchar_t* className;
    DWORD style;
    DWORD extendedStyle = 0;
    friend bool operator==(const Shape&, const Shape&) = default;
  };
  /// Throws std::runtime_error when the system makes none.
  void make(const Shape& shape, HWND parent);
  /// Looks at the messages of a window that the system has made.
  void watch(HWND window);
  void destroy();

  /// Every message; what is not taken goes to original().
  virtual LRESULT message(UINT message, WPARAM first, LPARAM second) {
    return original(message, first, second);
  }
  LRESULT original(UINT message, WPARAM first, LPARAM second) const {
    return CallWindowProcW(original_, handle_, message, first, second);
  }
  LRESULT send(UINT message, WPARAM first = 0, LPARAM second = 0) const {
    return SendMessageW(handle_, message, first, second);
  }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);

  Keeper& keeper_;
  HWND handle_ = nullptr;
  WNDPROC original_ = DefWindowProcW;
};

/// The module that this code is part of.
[[nodiscard]] HINSTANCE thisModule();

/// The class of the windows that a view draws itself. Each view has one of its own, so that views
/// share nothing and a library that is unloaded leaves none behind.
class WindowClass {
 public:
  /// Throws std::runtime_error when the system does not take it.
  WindowClass();
  ~WindowClass();
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;
  [[nodiscard]] const std::wstring& name() const { return name_; }

 private:
  std::wstring name_;
};

/// While there is one, windows are made in the system's present style where the module asks for it
/// by a manifest (resource 2), whatever the program around it looks like.
class PresentStyle {
 public:
  PresentStyle();
  ~PresentStyle();
  PresentStyle(const PresentStyle&) = delete;
  PresentStyle& operator=(const PresentStyle&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
};

}  // namespace lumodevice::win32
