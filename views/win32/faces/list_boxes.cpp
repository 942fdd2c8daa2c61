#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "lumodevice/toolkit/hand.hpp"
#include "views/win32/faces/dragging.hpp"
#include "views/win32/faces/face.hpp"
#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

namespace {

using toolkit::Property;
using toolkit::hand::Drag;

class ListBoxFace : public Face {
 public:
  ListBoxFace(Stage& stage, toolkit::ListBox& list) : Face(stage, list), list_(list) {}

  [[nodiscard]] toolkit::ListBox& list() const { return list_; }

  void draw(Property property, int item) override {
    switch (property) {
      case Property::ItemInserted:
        send(LB_INSERTSTRING, static_cast<WPARAM>(item),
             reinterpret_cast<LPARAM>(shown(list_.list(item)).c_str()));
        break;
      case Property::ItemRemoved:
        send(LB_DELETESTRING, static_cast<WPARAM>(item));
        break;
      case Property::ItemsCleared:
        send(LB_RESETCONTENT);
        break;
      case Property::ListIndex:
        break;
      default:
        return;
    }
    drawSelection();
  }
  void drawAll() override {
    send(LB_RESETCONTENT);
    for (int i = 0; i < list_.listCount(); ++i) {
      send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(shown(list_.list(i)).c_str()));
    }
    constexpr int kSpacing = 4;
    send(LB_SETITEMHEIGHT, 0, Measured(handle(), font()).lineHeight() + kSpacing);
    drawSelection();
  }
  [[nodiscard]] bool takesKeyboard() const override { return true; }
  bool useMnemonic() override {
    arrive();
    return true;
  }
  /// The keys have moved the selection; what the mouse does is seen to here.
  void notified(UINT code) override {
    if (code == LBN_SELCHANGE) {
      select(static_cast<int>(send(LB_GETCURSEL)));
    }
  }
  HBRUSH paint(HDC device) override {
    SetTextColor(device, stage().wardrobe().colours().fieldText);
    SetBkColor(device, stage().wardrobe().colours().field);
    return stage().wardrobe().brush(stage().wardrobe().colours().field);
  }

 protected:
  [[nodiscard]] Shape shape() const override {
    return {WC_LISTBOXW,
            WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_HASSTRINGS |
                LBS_NOINTEGRALHEIGHT,
            WS_EX_CLIENTEDGE};
  }

  LRESULT message(UINT message, WPARAM first, LPARAM second) override {
    const POINT at{GET_X_LPARAM(second), GET_Y_LPARAM(second)};
    switch (message) {
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK:  // a drag may begin right after another one
        pressAt(at);
        return 0;
      case WM_MOUSEMOVE:
        if (GetCapture() == handle()) {
          moveTo(at);
          return 0;
        }
        break;
      case WM_LBUTTONUP:
        if (GetCapture() == handle()) {
          releaseAt(at);
          return 0;
        }
        break;
      case WM_KEYDOWN:
        if (first == VK_ESCAPE && stage().dragging()) {
          ReleaseCapture();
          return 0;
        }
        break;
      case WM_CAPTURECHANGED:
        giveUp();
        break;
      default:
        break;
    }
    return Face::message(message, first, second);
  }

 private:
  static constexpr int kNoItem = -1;

  void pressAt(POINT at) {
    SetFocus(handle());
    const auto found = send(LB_ITEMFROMPOINT, 0, MAKELPARAM(at.x, at.y));
    const bool within = HIWORD(found) == 0 && LOWORD(found) < list_.listCount();
    pressed_ = within ? static_cast<int>(LOWORD(found)) : kNoItem;
    pressedAt_ = at;
    dragsFrom_ = kNoItem;
    released_.reset();
    if (pressed_ >= 0) {
      send(LB_SETCURSEL, static_cast<WPARAM>(pressed_));
      SetCapture(handle());
    }
  }

  void moveTo(POINT at) {
    if (stage().dragging()) {
      stage().dragging()->moveTo(onScreen(at));
    } else if (pressed_ >= 0 && (std::abs(at.x - pressedAt_.x) > GetSystemMetrics(SM_CXDRAG) ||
                                 std::abs(at.y - pressedAt_.y) > GetSystemMetrics(SM_CYDRAG))) {
      dragItem(std::exchange(pressed_, kNoItem));
    }
  }

  void releaseAt(POINT at) {
    if (stage().dragging()) {
      dropAt(onScreen(at));
    } else if (dragsFrom_ >= 0) {
      released_ = onScreen(at);  // before the drag has begun
    } else if (pressed_ >= 0) {
      select(std::exchange(pressed_, kNoItem));
    }
    ReleaseCapture();
  }

  /// The mouse was taken away.
  void giveUp() {
    pressed_ = kNoItem;
    if (std::exchange(stage().dragging(), nullptr)) {
      stage().act(list_, [&list = list_] { list.confirm(); });
    }
  }

  void dropAt(POINT place) {
    const std::unique_ptr<Dragging> dragging = std::move(stage().dragging());
    toolkit::ListBox* const onto = dragging->target(place);
    const auto drag = std::make_shared<Drag>(dragging->take());
    stage().act(list_, [&list = list_, onto, drag] {
      if (onto != nullptr) {
        drag->dropOn(*onto);
      } else {
        drag->cancel();
        list.confirm();
      }
    });
  }

  void select(int index) {
    stage().act(list_, [&list = list_, index, text = entry(index)] {
      if (index >= 0 && index < list.listCount() && list.list(index) == text) {
        toolkit::hand::select(list, index);
      } else {
        list.confirm();
      }
    });
  }

  void dragItem(int index) {
    dragsFrom_ = index;
    stage().act(list_, [this, index, text = entry(index)] {
      dragsFrom_ = kNoItem;
      if (index >= list_.listCount() || list_.list(index) != text) {
        list_.confirm();
        return;
      }
      Drag drag(list_, index);
      if (!drag.inProgress() || (GetCapture() != handle() && !released_)) {
        return;
      }
      stage().dragging() = std::make_unique<Dragging>(std::move(drag));
      if (const auto place = std::exchange(released_, std::nullopt)) {
        dropAt(*place);
      }
    });
  }

  [[nodiscard]] std::string entry(int index) const {
    return index >= 0 && index < list_.listCount() ? list_.list(index) : std::string();
  }
  [[nodiscard]] POINT onScreen(POINT at) const {
    ClientToScreen(handle(), &at);
    return at;
  }

  void drawSelection() {
    if (send(LB_GETCURSEL) != list_.listIndex()) {
      send(LB_SETCURSEL, static_cast<WPARAM>(list_.listIndex()));
    }
  }

  toolkit::ListBox& list_;
  int pressed_ = kNoItem;
  POINT pressedAt_{};
  /// The item whose drag is on its way.
  int dragsFrom_ = kNoItem;
  std::optional<POINT> released_;
};

}  // namespace

void Dragging::moveTo(POINT place) const {
  const auto* const face = dynamic_cast<ListBoxFace*>(Stage::faceOf(WindowFromPoint(place)));
  const bool taken = face != nullptr && drag_.canDropOn(face->list());
  SetCursor(LoadCursorW(nullptr, taken ? IDC_HAND : IDC_NO));
}

toolkit::ListBox* Dragging::target(POINT place) const {
  const auto* const face = dynamic_cast<ListBoxFace*>(Stage::faceOf(WindowFromPoint(place)));
  return face == nullptr ? nullptr : &face->list();
}

std::unique_ptr<Face> makeListBox(Stage& stage, toolkit::ListBox& list) {
  return std::make_unique<ListBoxFace>(stage, list);
}

}  // namespace lumodevice::win32
