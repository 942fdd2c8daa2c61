#include "views/win32/scale.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>

#include "lumodevice/toolkit/drawing.hpp"
#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

namespace {

constexpr int kPointsPerInch = 72;

int rounded(double pixels) {
  return static_cast<int>(std::lround(pixels));
}

/// A function of user32 that older systems have not.
template <typename Function>
Function* newer(const char* name) {
  const FARPROC found = GetProcAddress(GetModuleHandleW(L"user32"), name);
  Function* function = nullptr;
  static_assert(sizeof(function) == sizeof(found));
  std::memcpy(&function, &found, sizeof(function));
  return function;
}

int resolutionOf(HWND window) {
  if (auto* const ofWindow = newer<UINT WINAPI(HWND)>("GetDpiForWindow")) {
    if (const UINT dpi = ofWindow(window); dpi != 0) {
      return static_cast<int>(dpi);
    }
  }
  const HDC screen = GetDC(window);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(window, screen);
  return dpi;
}

LOGFONTW messageFont(int dpi) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof(metrics);
  auto* const forDpi =
      newer<BOOL WINAPI(UINT, UINT, void*, UINT, UINT)>("SystemParametersInfoForDpi");
  if (forDpi == nullptr || forDpi(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0,
                                  static_cast<UINT>(dpi)) == FALSE) {
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
  }
  return metrics.lfMessageFont;
}

}  // namespace

Scale::Scale(HWND window) {
  const int dpi = resolutionOf(window);
  pixelsPerInch_ = dpi;
  font_ = messageFont(dpi);
  const HDC device = GetDC(window);
  const HFONT font = CreateFontIndirectW(&font_);
  const HGDIOBJ before = SelectObject(device, font);
  TEXTMETRICW metrics{};
  GetTextMetricsW(device, &metrics);
  SIZE extent{};
  const std::wstring sample = shown(toolkit::kSampleText);
  GetTextExtentPoint32W(device, sample.c_str(), static_cast<int>(sample.size()), &extent);
  SelectObject(device, before);
  DeleteObject(font);
  ReleaseDC(window, device);
  const double perTwip = pixelsPerInch_ / toolkit::kTwipsPerInch;
  enlarged_ = std::max({1.0, metrics.tmHeight / (toolkit::kLineTwips * perTwip),
                        extent.cx / (toolkit::kSampleTwips * perTwip)});
}

int Scale::pixels(double twips) const {
  return rounded(twips * pixelsPerInch_ / toolkit::kTwipsPerInch * enlarged_);
}

RECT Scale::pixels(const toolkit::Place& place) const {
  return {pixels(place.left), pixels(place.top), pixels(place.left + place.width),
          pixels(place.top + place.height)};
}

float Scale::twips(int pixels) const {
  return static_cast<float>(pixels * toolkit::kTwipsPerInch / pixelsPerInch_ / enlarged_);
}

int Scale::letters(int points) const {
  return points > 0 ? rounded(points * enlarged_ * pixelsPerInch_ / kPointsPerInch)
                    : std::abs(font_.lfHeight);
}

}  // namespace lumodevice::win32
