#include <algorithm>
#include <string>

#include "lumodevice/toolkit/hand.hpp"
#include "views/win32/faces/face.hpp"
#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

namespace {

using toolkit::Property;

constexpr int kShownEntries = 16;

class ComboBoxFace : public Face {
 public:
  ComboBoxFace(Stage& stage, toolkit::ComboBox& box) : Face(stage, box), box_(box) {}

  void draw(Property property, int item) override {
    switch (property) {
      case Property::ItemInserted:
        send(CB_INSERTSTRING, static_cast<WPARAM>(item),
             reinterpret_cast<LPARAM>(shown(box_.list(item)).c_str()));
        break;
      case Property::ItemRemoved:
        send(CB_DELETESTRING, static_cast<WPARAM>(item));
        break;
      case Property::ItemsCleared:
        send(CB_RESETCONTENT);
        break;
      case Property::ListIndex:
      case Property::Text:
        break;
      default:
        return;
    }
    drawSelection();
  }
  void drawAll() override {
    send(CB_RESETCONTENT);
    for (int i = 0; i < box_.listCount(); ++i) {
      send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(shown(box_.list(i)).c_str()));
    }
    drawSelection();
  }
  /// The system's height is that of the opened list; that of the field follows from the letters.
  void place(const RECT& place) override {
    const int height = place.bottom - place.top;
    const int entry = Measured(handle(), font()).lineHeight() + 2;
    send(CB_SETITEMHEIGHT, 0, entry);
    RECT whole = place;
    whole.bottom += kShownEntries * entry;
    Face::place(whole);
    // What the edges take of it shows when it has a height.
    constexpr auto kField = static_cast<WPARAM>(-1);
    send(CB_SETITEMHEIGHT, kField, entry);
    RECT now{};
    GetWindowRect(handle(), &now);
    send(CB_SETITEMHEIGHT, kField, entry + height - (now.bottom - now.top));
    center(entry);
  }
  [[nodiscard]] bool takesKeyboard() const override { return true; }
  bool useMnemonic() override {
    arrive();
    return true;
  }
  void notified(UINT code) override {
    switch (code) {
      case CBN_SELENDOK:
        pick(static_cast<int>(send(CB_GETCURSEL)));
        return;
      case CBN_SELENDCANCEL:
        // What was looked at in the list is not meant. Every field that is left says so, too.
        if (send(CB_GETCURSEL) != box_.listIndex()) {
          stage().act(box_, [&box = box_] { box.confirm(); });
        }
        return;
      case CBN_EDITCHANGE:
        if (!drawing_) {
          stage().act(box_, [this] { toolkit::hand::type(box_, typed(text())); });
        }
        return;
      default:
        return;
    }
  }
  /// The field shows the text that the control holds, entry or not.
  void drawItem(const DRAWITEMSTRUCT& item) override {
    const bool field = (item.itemState & ODS_COMBOBOXEDIT) != 0;
    const int index = static_cast<int>(item.itemID);
    const bool entry = index >= 0 && index < box_.listCount();
    const std::wstring text = shown(field   ? std::string_view(box_.text())
                                    : entry ? std::string_view(box_.list(index))
                                            : std::string_view());
    const bool chosen = (item.itemState & ODS_SELECTED) != 0;
    const bool usable = IsWindowEnabled(handle()) != FALSE;
    SetBkColor(item.hDC, chosen ? GetSysColor(COLOR_HIGHLIGHT) : fieldColour());
    SetTextColor(item.hDC, chosen   ? GetSysColor(COLOR_HIGHLIGHTTEXT)
                           : usable ? stage().wardrobe().colours().fieldText
                                    : GetSysColor(COLOR_GRAYTEXT));
    constexpr int kIndent = 3;
    RECT place = item.rcItem;
    ExtTextOutW(item.hDC, 0, 0, ETO_OPAQUE, &place, L"", 0, nullptr);
    place.left += kIndent;
    DrawTextW(item.hDC, text.c_str(), static_cast<int>(text.size()), &place,
              DT_SINGLELINE | DT_VCENTER | DT_LEFT | DT_NOPREFIX | DT_END_ELLIPSIS);
    if ((item.itemState & ODS_FOCUS) != 0) {
      DrawFocusRect(item.hDC, &item.rcItem);
    }
  }
  HBRUSH paint(HDC device) override {
    SetTextColor(device, stage().wardrobe().colours().fieldText);
    SetBkColor(device, fieldColour());
    return stage().wardrobe().brush(fieldColour());
  }

 protected:
  [[nodiscard]] Shape shape() const override {
    constexpr DWORD kBoth = WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP | WS_VSCROLL;
    return {WC_COMBOBOXW,
            kBoth | (isEditable() ? DWORD{CBS_DROPDOWN | CBS_AUTOHSCROLL}
                                  : DWORD{CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS})};
  }
  void made() override {
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof(parts);
    GetComboBoxInfo(handle(), &parts);
    field_.reset();
    if (isEditable() && parts.hwndItem != nullptr) {
      send(CB_LIMITTEXT, 0);
      field_ = std::make_unique<Field>(*this, parts.hwndItem);
    }
  }

  LRESULT message(UINT message, WPARAM first, LPARAM second) override {
    if (const auto taken = keyOrWheel(message, first, second)) {
      return *taken;
    }
    return Face::message(message, first, second);
  }

 private:
  /// Where its text is typed.
  class Field : public Window {
   public:
    Field(ComboBoxFace& combo, HWND window) : Window(combo.stage()), combo_(combo) {
      watch(window);
    }

   protected:
    LRESULT message(UINT message, WPARAM first, LPARAM second) override {
      if (const auto taken = combo_.keyOrWheel(message, first, second)) {
        return *taken;
      }
      if (const auto taken = inputTo(combo_.stage(), message, first)) {
        return *taken;
      }
      if (message == WM_CHAR && first == VK_RETURN) {
        return 0;
      }
      const LRESULT result = original(message, first, second);
      if (message == WM_SETFOCUS) {
        combo_.stage().focusArrived();
      } else if (message == WM_KILLFOCUS) {
        combo_.stage().focusLeft(reinterpret_cast<HWND>(first));
      }
      return message == WM_GETDLGCODE ? result | DLGC_WANTALLKEYS : result;
    }

   private:
    ComboBoxFace& combo_;
  };

  /// The system puts the line that is typed at the top of its place.
  void center(int line) const {
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof(parts);
    if (field_ && GetComboBoxInfo(handle(), &parts) != FALSE) {
      const RECT& room = parts.rcItem;
      SetWindowPos(field_->handle(), nullptr, room.left,
                   room.top + (room.bottom - room.top - line) / 2, room.right - room.left, line,
                   SWP_NOZORDER | SWP_NOACTIVATE);
    }
  }

  [[nodiscard]] bool isEditable() const {
    return box_.look().comboStyle == toolkit::ComboStyle::Editable;
  }
  [[nodiscard]] COLORREF fieldColour() const {
    return IsWindowEnabled(handle()) != FALSE ? stage().wardrobe().colours().field : ground();
  }

  std::optional<LRESULT> keyOrWheel(UINT message, WPARAM first, LPARAM second) {
    const bool open = send(CB_GETDROPPEDSTATE) != FALSE;
    if (message == WM_MOUSEWHEEL && !open) {
      // What is picked is sent at once; nobody means that by turning a wheel over it.
      return SendMessageW(GetParent(handle()), message, first, second);
    }
    if (message == WM_KEYDOWN && !open) {
      if (const auto key = fieldKey(first)) {
        stage().act(box_, [&box = box_, key] { toolkit::hand::press(box, *key); });
        if (key == toolkit::Key::Enter) {
          clickEntered(stage(), box_);
          return 0;
        }
      }
    }
    return std::nullopt;
  }

  void pick(int index) {
    if (index < 0 || index >= box_.listCount()) {
      return;
    }
    // By its text too: the list may have become another one meanwhile.
    stage().act(box_, [&box = box_, index, entry = box_.list(index)] {
      if (index < box.listCount() && box.list(index) == entry) {
        toolkit::hand::select(box, index);
      } else {
        box.confirm();
      }
    });
  }

  void drawSelection() {
    drawing_ = true;
    if (send(CB_GETCURSEL) != box_.listIndex()) {
      send(CB_SETCURSEL, static_cast<WPARAM>(box_.listIndex()));
    }
    const std::wstring text = shown(box_.text());
    if (!isEditable()) {
      repaint();
    } else if (this->text() != text) {
      SetWindowTextW(handle(), text.c_str());
      const bool typedInto = field_ && GetFocus() == field_->handle();
      const auto end = typedInto ? static_cast<int>(text.size()) : 0;
      send(CB_SETEDITSEL, 0, MAKELPARAM(end, end));
    }
    drawing_ = false;
  }

  toolkit::ComboBox& box_;
  std::unique_ptr<Field> field_;
  bool drawing_ = false;
};

}  // namespace

std::unique_ptr<Face> makeComboBox(Stage& stage, toolkit::ComboBox& box) {
  return std::make_unique<ComboBoxFace>(stage, box);
}

}  // namespace lumodevice::win32
