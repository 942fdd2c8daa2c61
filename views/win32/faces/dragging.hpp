#pragma once

#include "lumodevice/toolkit/hand.hpp"
#include "views/win32/faces/face.hpp"

namespace lumodevice::win32 {

/// A drag that the mouse is at: it has the list that it began at, and ends when its button comes
/// up, by the Esc key, or when the mouse is taken away. A drop is taken by lists of the same form
/// alone, so the drag goes no further than the windows of this program.
class Dragging {
 public:
  explicit Dragging(toolkit::hand::Drag drag) : drag_(std::move(drag)) {}

  /// The mouse is there, on the screen.
  void moveTo(POINT place) const;
  /// It comes up there; the list that takes the drop, or null.
  [[nodiscard]] toolkit::ListBox* target(POINT place) const;
  [[nodiscard]] toolkit::hand::Drag take() { return std::move(drag_); }

 private:
  toolkit::hand::Drag drag_;
};

}  // namespace lumodevice::win32
