#include <utility>

#include "lumodevice/toolkit/drawing.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "views/win32/faces/face.hpp"

namespace lumodevice::win32 {

namespace {

using toolkit::MousePress;
using toolkit::Property;

class PictureFace : public Face {
 public:
  PictureFace(Stage& stage, toolkit::Pictured& control) : Face(stage, control), control_(control) {}

  void draw(Property property, int /*item*/) override {
    if (property == Property::Picture || property == Property::Stretch) {
      repaint();
    }
  }
  void drawAll() override { repaint(); }
  [[nodiscard]] bool takesKeyboard() const override { return true; }

 protected:
  [[nodiscard]] Shape shape() const override {
    return {stage().className().c_str(), WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP};
  }

  LRESULT message(UINT message, WPARAM first, LPARAM second) override {
    if (const auto taken = painted(message, first, [this](HDC device) { paintOn(device); })) {
      return *taken;
    }
    switch (message) {
      case WM_LBUTTONDOWN:
        SetFocus(handle());
        SetCapture(handle());
        press(MousePress::kLeft, first, second);
        return 0;
      case WM_RBUTTONDOWN:
        press(MousePress::kRight, first, second);
        return 0;
      case WM_MBUTTONDOWN:
        press(MousePress::kMiddle, first, second);
        return 0;
      case WM_LBUTTONUP: {
        const RECT whole = client();
        const bool mine = GetCapture() == handle();
        ReleaseCapture();
        if (mine && PtInRect(&whole, {GET_X_LPARAM(second), GET_Y_LPARAM(second)}) != FALSE) {
          click();
        }
        return 0;
      }
      case WM_KEYDOWN:
        if (first == VK_SPACE || first == VK_RETURN) {
          click();
          return 0;
        }
        break;
      case WM_SETFOCUS:
      case WM_KILLFOCUS:
        repaint();
        break;
      default:
        break;
    }
    return Face::message(message, first, second);
  }

 private:
  void click() {
    stage().act(control_, [&control = control_] { toolkit::hand::click(control); });
  }

  void press(MousePress::Button button, WPARAM keys, LPARAM at) {
    MousePress press;
    press.button = button;
    press.shift =
        static_cast<std::int16_t>(((keys & MK_SHIFT) != 0 ? int{MousePress::kShift} : 0) +
                                  ((keys & MK_CONTROL) != 0 ? int{MousePress::kControl} : 0) +
                                  (GetKeyState(VK_MENU) < 0 ? int{MousePress::kAlt} : 0));
    press.x = stage().scale().twips(GET_X_LPARAM(at));
    press.y = stage().scale().twips(GET_Y_LPARAM(at));
    stage().act(control_,
                [&control = control_, press] { toolkit::hand::mouseDown(control, press); });
  }

  [[nodiscard]] bool isStretched() const {
    const auto* const image = dynamic_cast<const toolkit::Image*>(&control_);
    return image != nullptr && image->stretch();
  }

  void paintOn(HDC device) const {
    const RECT whole = client();
    const auto picture = control_.picture();
    const bool drawn = picture && !picture->empty();
    RECT place = whole;
    if (drawn && !isStretched()) {
      // As large as on the screen that it comes from, at the view's scale.
      place.right = stage().scale().pixels(picture->width() * toolkit::kTwipsPerPicturePoint);
      place.bottom = stage().scale().pixels(picture->height() * toolkit::kTwipsPerPicturePoint);
    }
    if (!drawn || place.right < whole.right || place.bottom < whole.bottom) {
      FillRect(device, &whole,
               stage().wardrobe().brush(drawn ? ground() : stage().wardrobe().colours().field));
    }
    if (drawn) {
      // The picture is kept as the file of a bitmap, which is what the system draws.
      const std::span<const std::uint8_t> file = picture->bitmap();
      const auto* const info =
          reinterpret_cast<const BITMAPINFO*>(file.data() + sizeof(BITMAPFILEHEADER));
      const bool wholeTimes = place.right % picture->width() == 0;
      SetStretchBltMode(device, wholeTimes ? COLORONCOLOR : HALFTONE);
      SetBrushOrgEx(device, 0, 0, nullptr);
      StretchDIBits(device, 0, 0, place.right, place.bottom, 0, 0, picture->width(),
                    picture->height(), file.data() + toolkit::Picture::kHeaderSize, info,
                    DIB_RGB_COLORS, SRCCOPY);
    }
    if (GetFocus() == handle()) {
      RECT rim = whole;
      const HBRUSH brush = stage().wardrobe().brush(stage().wardrobe().colours().focus);
      FrameRect(device, &rim, brush);
      InflateRect(&rim, -1, -1);
      FrameRect(device, &rim, brush);
    }
  }

  toolkit::Pictured& control_;
};

}  // namespace

std::unique_ptr<Face> makePicture(Stage& stage, toolkit::Pictured& picture) {
  return std::make_unique<PictureFace>(stage, picture);
}

}  // namespace lumodevice::win32
