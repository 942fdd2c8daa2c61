#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "lumodevice/toolkit/frames.hpp"
#include "lumodevice/win32/form_view.hpp"
#include "views/win32/faces/dragging.hpp"
#include "views/win32/faces/face.hpp"
#include "views/win32/ground.hpp"
#include "views/win32/keyboard.hpp"
#include "views/win32/tips.hpp"
#include "views/win32/window.hpp"

namespace lumodevice::win32 {

/// What a view consists of: its window, the canvas that is the form, and the faces of the controls
/// on it. It outlives the view for as long as one of its windows is on the stack.
class FormView::Body : public Stage, public std::enable_shared_from_this<Body> {
 public:
  Body(toolkit::Surface& surface, FailureHandler onFailure);
  ~Body() override { close(); }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;

  /// Makes the windows.
  void open(HWND parent);
  /// The windows go.
  void close();

  bool tabLeaves = false;
  std::function<void(bool inside)> onFocus;

  [[nodiscard]] HWND window() const { return viewport_.handle(); }
  [[nodiscard]] HWND canvas() const { return canvas_.handle(); }
  /// Null when the form has ended.
  [[nodiscard]] toolkit::Surface* surface() const { return surface_; }
  [[nodiscard]] HWND windowOf(const toolkit::Control& control) const;
  [[nodiscard]] Size size() const;
  [[nodiscard]] const Keyboard& keyboard() const { return keyboard_; }
  /// The face that keys go on from.
  [[nodiscard]] Face* present() const;

  void draw(const toolkit::Control& control, toolkit::Property property, int item);
  /// The form and its controls go.
  void end();

  std::shared_ptr<void> hold() override { return weak_from_this().lock(); }
  void failed() noexcept override { onFailure_(std::current_exception()); }
  void passes(const MSG& message) override { tips_.relay(message); }
  [[nodiscard]] const std::wstring& className() const override { return class_.name(); }
  void act(const toolkit::Control& control, Deed deed) override;
  bool key(UINT message, WPARAM key) override;
  void focusArrived() override;
  void focusLeft(HWND toward) override;
  [[nodiscard]] std::unique_ptr<Dragging>& dragging() override { return dragging_; }

 private:
  [[nodiscard]] bool isOpen() const { return surface_ != nullptr && window() != nullptr; }
  [[nodiscard]] Face* faceOf(const toolkit::Control& control) const;
  [[nodiscard]] HWND above(const toolkit::Control& control) const;
  void actNext();
  /// In the fonts and colours of the system, at the resolution of the screen.
  void redraw();
  void dress(Face& face);
  void place(Face& face);
  void remake(Face& face);
  void arrange();
  /// Shows what an operator gets to and lets him use what he can. What is covered is hidden, so
  /// that no key goes there.
  void uncover();
  void drawPointer() const;
  void rest(Face& face);
  [[nodiscard]] bool isWithin(HWND window) const;

  FailureHandler onFailure_;
  toolkit::Surface* surface_;
  toolkit::Form* form_ = nullptr;
  WindowClass class_;
  Viewport viewport_;
  Canvas canvas_;
  Faces faces_;
  std::map<const toolkit::Control*, Face*> byControl_;
  Keyboard keyboard_{faces_};
  Tips tips_;
  std::deque<Deed> deeds_;
  std::unique_ptr<Dragging> dragging_;
  /// Whose window had the focus when it could not be used any more.
  Face* resting_ = nullptr;
  /// Where the focus was last.
  Face* last_ = nullptr;
};

}  // namespace lumodevice::win32
