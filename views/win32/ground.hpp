#pragma once

#include <functional>
#include <utility>

#include "views/win32/faces/face.hpp"

namespace lumodevice::win32 {

/// The window that is the form: the faces sit in it.
class Canvas : public Window {
 public:
  explicit Canvas(Stage& stage) : Window(stage), stage_(stage) {}
  void make(HWND parent);

 protected:
  LRESULT message(UINT message, WPARAM first, LPARAM second) override;

 private:
  Stage& stage_;
};

/// The window of the view: the form in it can be scrolled where it has less room than it wants.
class Viewport : public Window {
 public:
  struct Hand {
    /// The next act on its way.
    std::function<void()> act;
    std::function<void()> shown;
    /// The focus has come to the view itself.
    std::function<void()> focused;
    /// The system's fonts or colours, or the screen's resolution, have become others.
    std::function<void()> changed;
    /// Whether to show the hourglass over all of the form.
    std::function<bool()> busy;
  };
  Viewport(Stage& stage, Hand hand) : Window(stage), stage_(stage), hand_(std::move(hand)) {}
  void make(HWND parent);
  void setCanvas(HWND canvas, SIZE size);

  /// Brings a part of the form into view.
  void show(const RECT& part);

  /// Asks itself to have the next act done.
  void post() const { PostMessageW(handle(), kAct, 0, 0); }

 protected:
  LRESULT message(UINT message, WPARAM first, LPARAM second) override;

 private:
  static constexpr UINT kAct = WM_APP;

  void layOut();
  /// One bar; the origin that it allows.
  [[nodiscard]] LONG layOut(int bar, bool needed, LONG origin, LONG whole, LONG page) const;
  void scroll(int bar, UINT how);
  void scrollTo(int bar, int position);

  Stage& stage_;
  Hand hand_;
  HWND canvas_ = nullptr;
  SIZE size_{};
  POINT origin_{};
  bool layingOut_ = false;
};

}  // namespace lumodevice::win32
