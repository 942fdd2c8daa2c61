#include <string>

#include "lumodevice/toolkit/drawing.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "views/win32/faces/face.hpp"
#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

namespace {

using toolkit::Property;

/// What the three share: a caption, and that they are clicked. None of them changes what it shows
/// by itself: it shows what its control holds.
template <typename ControlType>
class ButtonFace : public Face {
 public:
  ButtonFace(Stage& stage, ControlType& control) : Face(stage, control), control_(control) {}

  void draw(Property property, int /*item*/) override {
    if (property == Property::Caption) {
      drawCaption();
    } else if (property == Property::Value) {
      drawValue();
    }
  }
  void drawAll() override {
    drawCaption();
    drawValue();
  }
  [[nodiscard]] bool takesKeyboard() const override { return true; }
  void notified(UINT code) override {
    if (code == BN_CLICKED && !arriving_) {
      click();
    }
  }
  bool useMnemonic() override {
    arrive();
    click();
    return true;
  }

 protected:
  [[nodiscard]] ControlType& model() const { return control_; }
  virtual void drawValue() {}
  /// What stands beside the caption, in pixels.
  [[nodiscard]] virtual int beside() const = 0;
  void click() {
    stage().act(control_, [&control = control_] { toolkit::hand::click(control); });
  }

  LRESULT message(UINT message, WPARAM first, LPARAM second) override {
    if (message != WM_SETFOCUS) {
      return Face::message(message, first, second);
    }
    // An option that is not chosen takes the focus for a click; so would a window that comes back
    // to the front, and a mode would be sent.
    arriving_ = true;
    const LRESULT result = Face::message(message, first, second);
    arriving_ = false;
    return result;
  }

 private:
  void drawCaption() {
    const std::wstring whole = shown(control_.caption());
    const RECT place = client();
    const Measured letters(handle(), font());
    const int room = place.right - beside();
    const std::wstring text = letters.width(whole) <= room
                                  ? marked(control_.caption(), control_.look().mnemonic)
                                  : unmarked(cut(letters, whole, room));
    if (text != this->text()) {
      SetWindowTextW(handle(), text.c_str());
    }
  }

  ControlType& control_;
  bool arriving_ = false;
};

class CommandButtonFace : public ButtonFace<toolkit::CommandButton> {
 public:
  using ButtonFace::ButtonFace;

 protected:
  [[nodiscard]] Shape shape() const override {
    return {WC_BUTTONW, WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP | BS_PUSHBUTTON};
  }
  [[nodiscard]] int beside() const override {
    constexpr int kEdges = 4;
    return 2 * kEdges;
  }
  LRESULT message(UINT message, WPARAM first, LPARAM second) override {
    if (message == WM_KEYDOWN && first == VK_RETURN) {
      click();
      return 0;
    }
    return ButtonFace::message(message, first, second);
  }
};

/// The mark and its distance from the caption.
int markWidth(const Stage& stage) {
  constexpr int kTwips = 315;
  return stage.scale().pixels(kTwips);
}

/// One that must not be overlooked is painted all over while it is ticked.
class CheckBoxFace : public ButtonFace<toolkit::CheckBox> {
 public:
  using ButtonFace::ButtonFace;

 protected:
  [[nodiscard]] Shape shape() const override {
    return {WC_BUTTONW, WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP | BS_3STATE};
  }
  void drawValue() override {
    constexpr WPARAM kStates[] = {BST_UNCHECKED, BST_CHECKED, BST_INDETERMINATE};
    send(BM_SETCHECK, kStates[model().value()]);
    if (isWarning()) {
      repaint();
    }
  }
  [[nodiscard]] int beside() const override { return markWidth(stage()); }

  LRESULT message(UINT message, WPARAM first, LPARAM second) override {
    if (!isWarning()) {
      return ButtonFace::message(message, first, second);
    }
    if (const auto taken = painted(message, first, [this](HDC device) { paintOn(device); })) {
      return *taken;
    }
    switch (message) {
      case WM_SETTEXT:
      case WM_ENABLE:
      case WM_SETFOCUS:
      case WM_KILLFOCUS:
      case BM_SETSTATE: {
        // The system's control would paint at once, by itself.
        const LRESULT result = ButtonFace::message(message, first, second);
        repaint();
        return result;
      }
      default:
        return ButtonFace::message(message, first, second);
    }
  }

 private:
  [[nodiscard]] bool isWarning() const {
    return model().look().colorRole == toolkit::ColorRole::Warning;
  }

  void paintOn(HDC device) const {
    const Wardrobe::Colours& colours = stage().wardrobe().colours();
    const RECT whole = client();
    const bool usable = IsWindowEnabled(handle()) != FALSE;
    const bool alarming = usable && model().value() == toolkit::CheckBox::kTicked;
    FillRect(device, &whole,
             stage().wardrobe().brush(alarming ? colorref(toolkit::kAlarm) : ground()));
    const int mark = markWidth(stage());
    const int side = GetSystemMetrics(SM_CXMENUCHECK);
    const int top = (whole.bottom - side) / 2;
    RECT box{(mark - side) / 2 + 2, top, (mark - side) / 2 + 2 + side, top + side};
    const UINT ticked = model().value() == toolkit::CheckBox::kClear ? DFCS_BUTTONCHECK
                        : model().value() == toolkit::CheckBox::kTicked
                            ? DFCS_BUTTONCHECK | DFCS_CHECKED
                            : DFCS_BUTTON3STATE | DFCS_CHECKED;
    DrawFrameControl(device, &box, DFC_BUTTON, ticked | DFCS_FLAT | (usable ? 0U : DFCS_INACTIVE));
    const HGDIOBJ before = SelectObject(device, font());
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, alarming ? RGB(255, 255, 255)
                         : usable ? colours.text
                                  : GetSysColor(COLOR_GRAYTEXT));
    RECT place{mark + 2, 0, whole.right, whole.bottom};
    const std::wstring caption = text();
    DrawTextW(device, caption.c_str(), static_cast<int>(caption.size()), &place,
              DT_SINGLELINE | DT_VCENTER | DT_LEFT);
    if (GetFocus() == handle()) {
      RECT around = place;
      DrawTextW(device, caption.c_str(), static_cast<int>(caption.size()), &around,
                DT_SINGLELINE | DT_LEFT | DT_CALCRECT);
      OffsetRect(&around, 0, (whole.bottom - around.bottom) / 2);
      InflateRect(&around, 2, 1);
      SetTextColor(device, RGB(0, 0, 0));
      SetBkColor(device, RGB(255, 255, 255));
      DrawFocusRect(device, &around);
    }
    SelectObject(device, before);
  }
};

/// The options of one container are a group: Tab stops at the chosen one, and the arrow keys walk
/// among them.
class OptionFace : public ButtonFace<toolkit::OptionButton> {
 public:
  using ButtonFace::ButtonFace;

  [[nodiscard]] bool isStop() const override {
    return ButtonFace::isStop() && (model().value() || isFirstWithoutChoice());
  }

 protected:
  [[nodiscard]] Shape shape() const override {
    return {WC_BUTTONW, WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP | BS_RADIOBUTTON};
  }
  void drawValue() override { send(BM_SETCHECK, model().value() ? BST_CHECKED : BST_UNCHECKED); }
  [[nodiscard]] int beside() const override { return markWidth(stage()); }

 private:
  [[nodiscard]] bool isFirstWithoutChoice() const {
    for (const auto& each : model().surface().controls()) {
      const auto* const option = dynamic_cast<const toolkit::OptionButton*>(each.get());
      if (option == nullptr || option->container() != model().container()) {
        continue;
      }
      if (option->value() && option->usable()) {
        return false;
      }
    }
    for (const auto& each : model().surface().controls()) {
      if (each->kind() == toolkit::Kind::OptionButton && each->container() == model().container() &&
          each->usable()) {
        return each.get() == &model();
      }
    }
    return false;
  }
};

}  // namespace

std::unique_ptr<Face> makeButton(Stage& stage, toolkit::CommandButton& button) {
  return std::make_unique<CommandButtonFace>(stage, button);
}

std::unique_ptr<Face> makeCheckBox(Stage& stage, toolkit::CheckBox& box) {
  return std::make_unique<CheckBoxFace>(stage, box);
}

std::unique_ptr<Face> makeOption(Stage& stage, toolkit::OptionButton& option) {
  return std::make_unique<OptionFace>(stage, option);
}

}  // namespace lumodevice::win32
