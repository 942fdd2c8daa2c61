#include <algorithm>
#include <string>
#include <utility>

#include "lumodevice/toolkit/hand.hpp"
#include "views/win32/faces/face.hpp"
#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

namespace {

using toolkit::Property;

class TextBoxFace : public Face {
 public:
  TextBoxFace(Stage& stage, toolkit::TextBox& box) : Face(stage, box), box_(box) {}

  void draw(Property property, int /*item*/) override {
    if (property == Property::Text) {
      drawText();
    }
  }
  void drawAll() override {
    // A reading is looked at and copied, never typed over.
    send(EM_SETREADONLY, isReading() ? TRUE : FALSE);
    letters_ = 0;
    drawText();
    center();
  }
  void place(const RECT& place) override {
    Face::place(place);
    center();
  }
  [[nodiscard]] bool takesKeyboard() const override { return true; }
  void arrive() override {
    Face::arrive();
    send(EM_SETSEL, 0, -1);
  }
  bool useMnemonic() override {
    arrive();
    return true;
  }
  void notified(UINT code) override {
    if (code == EN_CHANGE && !drawing_ && !box_.look().typedWhole) {
      type();
    }
  }
  HBRUSH paint(HDC device) override {
    const Wardrobe::Colours& colours = stage().wardrobe().colours();
    const bool usable = IsWindowEnabled(handle()) != FALSE;
    SetTextColor(device, box_.look().colorRole == toolkit::ColorRole::Normal
                             ? colours.fieldText
                             : stage().wardrobe().letters(box_.look().colorRole));
    SetBkColor(device, field(usable));
    return stage().wardrobe().brush(field(usable));
  }

 protected:
  [[nodiscard]] Shape shape() const override {
    constexpr DWORD kAlignments[] = {ES_LEFT, ES_RIGHT, ES_CENTER};
    return {WC_EDITW,
            WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP | ES_AUTOHSCROLL |
                kAlignments[static_cast<int>(box_.look().alignment)],
            WS_EX_CLIENTEDGE};
  }
  void made() override {
    send(EM_SETLIMITTEXT, 0);  // an answer may be longer than the control's own limit
  }

  LRESULT message(UINT message, WPARAM first, LPARAM second) override {
    switch (message) {
      case WM_KEYDOWN:
        if (const auto key = fieldKey(first)) {
          press(*key);
          return 0;
        }
        if (first == VK_ESCAPE) {
          drawText();
          return 0;
        }
        break;
      case WM_CHAR: {
        constexpr WPARAM kSelectAll = 1;  // Ctrl+A
        if (first == VK_RETURN || first == VK_ESCAPE) {
          return 0;
        }
        if (first == kSelectAll) {
          send(EM_SETSEL, 0, -1);
          return 0;
        }
        break;
      }
      case WM_KILLFOCUS:
        completed();
        break;
      case WM_NCCALCSIZE: {
        const LRESULT result = Face::message(message, first, second);
        auto& inner = *reinterpret_cast<RECT*>(second);
        const int room = (inner.bottom - inner.top - lineHeight_) / 2;
        if (lineHeight_ > 0 && room > 0) {
          inner.top += room;
          inner.bottom -= room;
        }
        return result;
      }
      case WM_NCPAINT: {
        const LRESULT result = Face::message(message, first, second);
        paintRim();
        return result;
      }
      case WM_ENABLE: {
        const LRESULT result = Face::message(message, first, second);
        RedrawWindow(handle(), nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE);
        return result;
      }
      default:
        break;
    }
    return Face::message(message, first, second);
  }

 private:
  void type() {
    // What stands there when it is done: more may have been typed by then.
    stage().act(box_, [this] { toolkit::hand::type(box_, typed(text())); });
  }
  void completed() {
    if (box_.look().typedWhole && text() != shown(box_.text())) {
      type();
    }
  }
  void press(toolkit::Key key) {
    if (key == toolkit::Key::Enter) {
      completed();
    }
    stage().act(box_, [&box = box_, key] { toolkit::hand::press(box, key); });
    if (key == toolkit::Key::Enter && clickEntered(stage(), box_)) {
      send(EM_SETSEL, 0, -1);  // the next value is typed over this one
    }
  }

  [[nodiscard]] bool isReading() const {
    return box_.look().colorRole == toolkit::ColorRole::Value;
  }
  [[nodiscard]] COLORREF field(bool usable) const {
    return usable ? stage().wardrobe().colours().field : ground();
  }

  void drawText() {
    const std::wstring text = shown(box_.text());
    if (isReading()) {
      fit(text);
    }
    if (this->text() != text) {
      drawing_ = true;
      SetWindowTextW(handle(), text.c_str());
      drawing_ = false;
      if (GetFocus() == handle()) {
        const auto end = static_cast<WPARAM>(text.size());
        send(EM_SETSEL, end, static_cast<LPARAM>(end));
      }
    }
  }

  /// A number of which a part cannot be seen would be another number.
  void fit(const std::wstring& text) {
    constexpr double kSmallest = 0.4;
    constexpr int kBeside = 12;
    const int whole = stage().scale().letters(box_.look().fontSize);
    const int needed = Measured(handle(), font()).width(text);
    RECT outer{};
    GetWindowRect(handle(), &outer);
    const double share =
        static_cast<double>(outer.right - outer.left - kBeside) / std::max(needed, 1);
    const int letters = static_cast<int>(whole * std::clamp(share, kSmallest, 1.0));
    if (std::exchange(letters_, letters) != letters) {
      send(WM_SETFONT, reinterpret_cast<WPARAM>(stage().wardrobe().font(letters, box_.look().bold)),
           TRUE);
      center();
    }
  }

  /// The system puts a line at the top of its field; it gets a field as high as a line.
  void center() {
    constexpr int kAround = 2;
    const auto used = reinterpret_cast<HFONT>(send(WM_GETFONT));
    const int height = Measured(handle(), used).lineHeight() + kAround;
    if (std::exchange(lineHeight_, height) != height) {
      SetWindowPos(handle(), nullptr, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    }
  }

  /// What is left between the edge and the line.
  void paintRim() const {
    RECT outer{};
    GetWindowRect(handle(), &outer);
    RECT inner = client();
    MapWindowPoints(handle(), nullptr, reinterpret_cast<POINT*>(&inner), 2);
    OffsetRect(&inner, -outer.left, -outer.top);
    OffsetRect(&outer, -outer.left, -outer.top);
    const int edge = GetSystemMetrics(SM_CXEDGE);
    InflateRect(&outer, -edge, -edge);
    const HDC device = GetWindowDC(handle());
    ExcludeClipRect(device, inner.left, inner.top, inner.right, inner.bottom);
    FillRect(device, &outer, stage().wardrobe().brush(field(IsWindowEnabled(handle()) != FALSE)));
    ReleaseDC(handle(), device);
  }

  toolkit::TextBox& box_;
  bool drawing_ = false;
  /// How high its letters are, where they are made smaller to fit.
  int letters_ = 0;
  int lineHeight_ = 0;
};

}  // namespace

std::unique_ptr<Face> makeTextBox(Stage& stage, toolkit::TextBox& box) {
  return std::make_unique<TextBoxFace>(stage, box);
}

}  // namespace lumodevice::win32
