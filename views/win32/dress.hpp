#pragma once

#include <map>
#include <string>
#include <utility>

#include "lumodevice/toolkit/look.hpp"
#include "lumodevice/toolkit/picture.hpp"
#include "views/win32/scale.hpp"

namespace lumodevice::win32 {

/// Something of the drawing interface that is deleted with its owner.
template <typename Handle>
class Drawn {
 public:
  Drawn() = default;
  explicit Drawn(Handle handle) : handle_(handle) {}
  ~Drawn() {
    if (handle_ != nullptr) {
      DeleteObject(handle_);
    }
  }
  Drawn(Drawn&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Drawn& operator=(Drawn&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  Drawn(const Drawn&) = delete;
  Drawn& operator=(const Drawn&) = delete;
  [[nodiscard]] Handle get() const { return handle_; }

 private:
  Handle handle_ = nullptr;
};

/// The fonts and colours of a view, as the system has them now.
class Wardrobe {
 public:
  explicit Wardrobe(const Scale& scale);

  /// Letters of that height in pixels; lives as long as the wardrobe.
  [[nodiscard]] HFONT font(int height, bool bold);

  struct Colours {
    COLORREF window;
    COLORREF field;
    COLORREF text;
    COLORREF fieldText;
    COLORREF card;
    COLORREF edge;
    COLORREF focus;
  };
  [[nodiscard]] const Colours& colours() const { return colours_; }
  [[nodiscard]] COLORREF letters(toolkit::ColorRole role) const;
  /// A brush of one of the colours.
  [[nodiscard]] HBRUSH brush(COLORREF colour);

 private:
  LOGFONTW font_;
  Colours colours_;
  bool dark_;
  bool highContrast_;
  std::map<std::pair<int, bool>, Drawn<HFONT>> fonts_;
  std::map<COLORREF, Drawn<HBRUSH>> brushes_;
};

[[nodiscard]] COLORREF colorref(toolkit::Colour colour);

/// A device with a font in it, as long as the object lives.
class Measured {
 public:
  Measured(HWND window, HFONT font);
  ~Measured();
  Measured(const Measured&) = delete;
  Measured& operator=(const Measured&) = delete;
  [[nodiscard]] int width(const std::wstring& text) const;
  [[nodiscard]] int lineHeight() const;

 private:
  HWND window_;
  HDC device_;
  HGDIOBJ before_;
};

/// The text, cut and ended by dots where it is wider than the room in pixels.
[[nodiscard]] std::wstring cut(const Measured& letters, const std::wstring& text, int room);

}  // namespace lumodevice::win32
