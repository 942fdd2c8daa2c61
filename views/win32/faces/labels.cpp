#include <utility>

#include "lumodevice/toolkit/hand.hpp"
#include "views/win32/faces/face.hpp"
#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

namespace {

class LabelFace : public Face {
 public:
  LabelFace(Stage& stage, toolkit::Label& label) : Face(stage, label), label_(label) {}

  void draw(toolkit::Property property, int /*item*/) override {
    if (property == toolkit::Property::Caption) {
      drawAll();
    }
  }
  void drawAll() override {
    SetWindowTextW(handle(), marked(label_.caption(), label_.look().mnemonic).c_str());
  }

 protected:
  [[nodiscard]] Shape shape() const override {
    constexpr DWORD kAlignments[] = {SS_LEFT, SS_RIGHT, SS_CENTER};
    return {WC_STATICW, WS_CHILD | WS_CLIPSIBLINGS | SS_NOTIFY | SS_CENTERIMAGE | SS_ENDELLIPSIS |
                            kAlignments[static_cast<int>(label_.look().alignment)]};
  }

  LRESULT message(UINT message, WPARAM first, LPARAM second) override {
    switch (message) {
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK:
        pressed_ = true;
        SetCapture(handle());
        return 0;
      case WM_LBUTTONUP: {
        const RECT whole = client();
        const POINT at{GET_X_LPARAM(second), GET_Y_LPARAM(second)};
        ReleaseCapture();
        if (std::exchange(pressed_, false) && PtInRect(&whole, at) != FALSE) {
          stage().act(label_, [&label = label_] { toolkit::hand::click(label); });
        }
        return 0;
      }
      default:
        return Face::message(message, first, second);
    }
  }

 private:
  toolkit::Label& label_;
  bool pressed_ = false;
};

}  // namespace

std::unique_ptr<Face> makeLabel(Stage& stage, toolkit::Label& label) {
  return std::make_unique<LabelFace>(stage, label);
}

}  // namespace lumodevice::win32
