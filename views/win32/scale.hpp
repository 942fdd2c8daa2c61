#pragma once

#include "lumodevice/toolkit/property.hpp"
#include "views/win32/windows.hpp"

namespace lumodevice::win32 {

/// Twips of a form to the pixels of a view. What adjoins in twips adjoins in pixels.
class Scale {
 public:
  Scale() = default;
  /// That of the window's screen; larger where the system's message font is larger than the one
  /// that forms are drawn for, so that texts fit into their places.
  explicit Scale(HWND window);

  [[nodiscard]] int pixels(double twips) const;
  [[nodiscard]] RECT pixels(const toolkit::Place& place) const;
  [[nodiscard]] float twips(int pixels) const;

  /// The system's message font on that screen.
  [[nodiscard]] const LOGFONTW& font() const { return font_; }
  /// How high letters are in pixels that are `points` high in the form's own font; 0 for those of
  /// the message font.
  [[nodiscard]] int letters(int points) const;

 private:
  double enlarged_ = 1;
  double pixelsPerInch_ = USER_DEFAULT_SCREEN_DPI;
  LOGFONTW font_{};
};

}  // namespace lumodevice::win32
