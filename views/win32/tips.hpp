#pragma once

#include <string>

#include "views/win32/faces/face.hpp"

namespace lumodevice::win32 {

/// The tool tips of a view, in a window of the system's that all share.
class Tips {
 public:
  /// For the windows of a view; it goes with that one.
  void make(HWND view);

  /// What the face's window says from now on, nothing for an empty text; also where that is now.
  void set(const Face& face) const;
  /// Its window goes.
  void forget(const Face& face) const;
  /// The mouse is on its way to a window.
  void relay(const MSG& message) const;

 private:
  HWND window_ = nullptr;
};

}  // namespace lumodevice::win32
