#include "tests/views/win32/window_shown.hpp"

#include <algorithm>
#include <string_view>

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/drawing.hpp"
#include "views/win32/texts.hpp"
#include "views/win32/windows.hpp"

namespace lumodevice::support {

namespace {

class Comparison {
 public:
  explicit Comparison(const toolkit::Control& control) : control_(control) {}

  void same(const char* what, const std::string& shown, std::string_view meant) {
    if (shown != meant) {
      lines_ += control_.fullName() + " " + what + ": shows \"" + shown + "\", is \"" +
                std::string(meant) + "\"\n";
    }
  }
  void same(const char* what, LRESULT shown, LRESULT meant) {
    same(what, std::to_string(shown), std::to_string(meant));
  }
  [[nodiscard]] std::string lines() const { return lines_; }

 private:
  const toolkit::Control& control_;
  std::string lines_;
};

std::wstring textOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

/// A caption without its marks.
std::string captionOf(HWND window) {
  const std::wstring text = textOf(window);
  std::wstring plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'&' && i + 1 < text.size()) {
      ++i;
    }
    plain += text[i];
  }
  return win32::typed(plain);
}

/// A caption that is too long for its place is cut.
std::string cutLike(const std::string& shown, const std::string& whole) {
  const std::string dots = "…";
  const bool cut =
      shown.ends_with(dots) && whole.starts_with(shown.substr(0, shown.size() - dots.size()));
  return cut ? shown : whole;
}

struct ListMessages {
  UINT count;
  UINT length;
  UINT text;
  UINT selected;
};
constexpr ListMessages kOfCombo{CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT, CB_GETCURSEL};
constexpr ListMessages kOfList{LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT, LB_GETCURSEL};

void compareList(Comparison& result, HWND window, const toolkit::ListControl& list,
                 const ListMessages& messages) {
  const LRESULT count = SendMessageW(window, messages.count, 0, 0);
  result.same("entries", count, list.listCount());
  for (int i = 0; i < std::min(static_cast<int>(count), list.listCount()); ++i) {
    const auto index = static_cast<WPARAM>(i);
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, messages.length, index, 0)) + 1,
                      L'\0');
    SendMessageW(window, messages.text, index, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    result.same("entry", win32::typed(text), list.list(i));
  }
  result.same("selection", SendMessageW(window, messages.selected, 0, 0), list.listIndex());
}

void compareKind(Comparison& result, HWND window, const toolkit::Control& control) {
  if (const auto* const label = dynamic_cast<const toolkit::Label*>(&control)) {
    result.same("caption", captionOf(window), label->caption());
  } else if (const auto* const frame = dynamic_cast<const toolkit::Frame*>(&control)) {
    result.same("caption", captionOf(window), frame->caption());
  } else if (const auto* const field = dynamic_cast<const toolkit::TextBox*>(&control)) {
    result.same("text", win32::typed(textOf(window)), field->text());
  } else if (const auto* const combo = dynamic_cast<const toolkit::ComboBox*>(&control)) {
    compareList(result, window, *combo, kOfCombo);
    if (combo->look().comboStyle == toolkit::ComboStyle::Editable) {
      result.same("text", win32::typed(textOf(window)), combo->text());
    }
  } else if (const auto* const list = dynamic_cast<const toolkit::ListBox*>(&control)) {
    compareList(result, window, *list, kOfList);
  } else if (const auto* const button = dynamic_cast<const toolkit::CommandButton*>(&control)) {
    result.same("caption", captionOf(window), cutLike(captionOf(window), button->caption()));
  } else if (const auto* const check = dynamic_cast<const toolkit::CheckBox*>(&control)) {
    result.same("value", SendMessageW(window, BM_GETCHECK, 0, 0), check->value());
    result.same("caption", captionOf(window), cutLike(captionOf(window), check->caption()));
  } else if (const auto* const option = dynamic_cast<const toolkit::OptionButton*>(&control)) {
    result.same("value", SendMessageW(window, BM_GETCHECK, 0, 0), option->value() ? 1 : 0);
    result.same("caption", captionOf(window), cutLike(captionOf(window), option->caption()));
  }
}

}  // namespace

std::string differences(const win32::FormView& view, const toolkit::Control& control) {
  const HWND window = view.windowOf(control);
  Comparison result(control);
  result.same("window", window != nullptr, control.kind() != toolkit::Kind::Timer);
  if (window == nullptr || control.kind() == toolkit::Kind::Form) {
    return result.lines();
  }
  result.same("usable", IsWindowEnabled(window), control.usable());
  result.same("visible", (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0,
              toolkit::seen(control.surface(), control));
  compareKind(result, window, control);
  return result.lines();
}

std::string differences(const win32::FormView& view, const toolkit::Surface& surface) {
  std::string lines;
  for (const auto& control : surface.controls()) {
    lines += differences(view, *control);
  }
  return lines;
}

}  // namespace lumodevice::support
