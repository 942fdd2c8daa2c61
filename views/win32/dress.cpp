#include "views/win32/dress.hpp"

#include "lumodevice/toolkit/drawing.hpp"

namespace lumodevice::win32 {

namespace {

toolkit::Colour colour(COLORREF of) {
  return {GetRValue(of), GetGValue(of), GetBValue(of)};
}

bool isHighContrast() {
  HIGHCONTRASTW contrast{};
  contrast.cbSize = sizeof(contrast);
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(contrast), &contrast, 0) != FALSE &&
         (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

}  // namespace

COLORREF colorref(toolkit::Colour of) {
  return RGB(of.red, of.green, of.blue);
}

Wardrobe::Wardrobe(const Scale& scale) : font_(scale.font()), highContrast_(isHighContrast()) {
  const COLORREF window = GetSysColor(COLOR_BTNFACE);
  const COLORREF field = GetSysColor(COLOR_WINDOW);
  const COLORREF text = GetSysColor(COLOR_BTNTEXT);
  dark_ = toolkit::isDark(colour(window));
  colours_ = {window,
              field,
              text,
              GetSysColor(COLOR_WINDOWTEXT),
              highContrast_
                  ? window
                  : colorref(toolkit::cardColour(colour(window), colour(field), colour(text))),
              highContrast_ ? text : colorref(toolkit::edgeColour(colour(window), colour(text))),
              GetSysColor(COLOR_HIGHLIGHT)};
}

HFONT Wardrobe::font(int height, bool bold) {
  Drawn<HFONT>& kept = fonts_[{height, bold}];
  if (kept.get() == nullptr) {
    LOGFONTW wanted = font_;
    wanted.lfHeight = -height;
    wanted.lfWeight = bold ? FW_BOLD : font_.lfWeight;
    kept = Drawn<HFONT>(CreateFontIndirectW(&wanted));
  }
  return kept.get();
}

COLORREF Wardrobe::letters(toolkit::ColorRole role) const {
  return role == toolkit::ColorRole::Normal || highContrast_
             ? colours_.text
             : colorref(toolkit::colourOf(role, dark_));
}

HBRUSH Wardrobe::brush(COLORREF of) {
  Drawn<HBRUSH>& kept = brushes_[of];
  if (kept.get() == nullptr) {
    kept = Drawn<HBRUSH>(CreateSolidBrush(of));
  }
  return kept.get();
}

Measured::Measured(HWND window, HFONT font)
    : window_(window), device_(GetDC(window)), before_(SelectObject(device_, font)) {}

Measured::~Measured() {
  SelectObject(device_, before_);
  ReleaseDC(window_, device_);
}

int Measured::width(const std::wstring& text) const {
  SIZE extent{};
  GetTextExtentPoint32W(device_, text.c_str(), static_cast<int>(text.size()), &extent);
  return extent.cx;
}

int Measured::lineHeight() const {
  TEXTMETRICW metrics{};
  GetTextMetricsW(device_, &metrics);
  return metrics.tmHeight;
}

std::wstring cut(const Measured& letters, const std::wstring& text, int room) {
  constexpr wchar_t kDots = L'\x2026';
  if (letters.width(text) <= room) {
    return text;
  }
  std::wstring part = text;
  while (!part.empty() && letters.width(part + kDots) > room) {
    part.pop_back();
  }
  return part + kDots;
}

}  // namespace lumodevice::win32
