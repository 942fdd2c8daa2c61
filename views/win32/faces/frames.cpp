#include "lumodevice/toolkit/drawing.hpp"
#include "views/win32/faces/face.hpp"
#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

namespace {

/// A frame as a card with its caption within; one that is as wide as what it sits in is a page.
class FrameFace : public Face {
 public:
  FrameFace(Stage& stage, toolkit::Frame& frame) : Face(stage, frame), frame_(frame) {}

  void draw(toolkit::Property property, int /*item*/) override {
    if (property == toolkit::Property::Caption) {
      drawAll();
    }
  }
  void drawAll() override {
    SetWindowTextW(handle(), marked(frame_.caption(), frame_.look().mnemonic).c_str());
    repaint();
  }

 protected:
  [[nodiscard]] Shape shape() const override {
    return {className().c_str(), WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS};
  }

  LRESULT message(UINT message, WPARAM first, LPARAM second) override {
    if (message == WM_ENABLE) {
      repaint();
    }
    if (const auto taken = handOn(stage(), message, first, second)) {
      return *taken;
    }
    if (const auto taken = painted(message, first, [this](HDC device) { paintOn(device); })) {
      return *taken;
    }
    return Face::message(message, first, second);
  }

 private:
  [[nodiscard]] const std::wstring& className() const { return stage().className(); }

  void paintOn(HDC device) const {
    const Wardrobe::Colours& colours = stage().wardrobe().colours();
    const RECT whole = client();
    const bool page = toolkit::isPage(frame_);
    FillRect(device, &whole, stage().wardrobe().brush(page ? colours.window : ground()));
    if (!page) {
      paintCard(device, whole);
    }
    const toolkit::Look& look = frame_.look();
    const int letters = stage().scale().letters(look.fontSize);
    const HGDIOBJ before = SelectObject(
        device, stage().wardrobe().font(
                    page ? static_cast<int>(letters * toolkit::kPageCaption) : letters, true));
    const int margin = stage().scale().pixels(toolkit::kFrameMargin);
    RECT place{margin,
               stage().scale().pixels(page ? toolkit::kFrameMargin : toolkit::kFrameCaptionTop),
               whole.right - margin, whole.bottom};
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, frame_.usable() ? stage().wardrobe().letters(look.colorRole)
                                         : GetSysColor(COLOR_GRAYTEXT));
    const std::wstring caption = marked(frame_.caption(), look.mnemonic);
    DrawTextW(device, caption.c_str(), static_cast<int>(caption.size()), &place,
              DT_SINGLELINE | DT_LEFT | DT_TOP | DT_END_ELLIPSIS);
    SelectObject(device, before);
  }

  void paintCard(HDC device, const RECT& whole) const {
    constexpr int kRounding = 120;
    const Wardrobe::Colours& colours = stage().wardrobe().colours();
    const Drawn<HPEN> edge(CreatePen(PS_SOLID, 1, colours.edge));
    const HGDIOBJ pen = SelectObject(device, edge.get());
    const HGDIOBJ brush = SelectObject(device, stage().wardrobe().brush(colours.card));
    const int rounding = stage().scale().pixels(kRounding);
    RoundRect(device, whole.left, whole.top, whole.right, whole.bottom, rounding, rounding);
    SelectObject(device, brush);
    SelectObject(device, pen);
  }

  toolkit::Frame& frame_;
};

}  // namespace

std::unique_ptr<Face> makeFrame(Stage& stage, toolkit::Frame& frame) {
  return std::make_unique<FrameFace>(stage, frame);
}

}  // namespace lumodevice::win32
