#include "lumodevice/toolkit/hand.hpp"

#include <string>

namespace lumodevice::toolkit::hand {

namespace {

[[noreturn]] void unknownAct(const Control& control, std::string_view act) {
  throw PropertyFault(kNoSuchProperty, control.fullName() + " cannot be " + std::string(act));
}

/// The control as that type, or null.
template <typename ControlType>
ControlType* as(Control& control) {
  return dynamic_cast<ControlType*>(&control);
}

void pick(ListControl& list, int index) {
  if (index < 0 || index >= list.listCount()) {
    throw PropertyFault(kInvalidPropertyValue,
                        list.fullName() + " holds no entry " + std::to_string(index));
  }
  if (list.listIndex() == index) {
    list.click.raise();
  } else {
    list.setListIndex(index);
  }
}

/// Runs the click of a control that is one of the types; false when it is none of them.
template <typename... ControlTypes>
bool raiseClick(Control& control) {
  return ([&] {
    auto* typed = as<ControlTypes>(control);
    if (typed != nullptr) {
      typed->click.raise();
    }
    return typed != nullptr;
  }() || ...);
}

}  // namespace

bool click(Control& control) {
  auto* box = as<CheckBox>(control);
  auto* option = as<OptionButton>(control);
  auto* list = as<ListControl>(control);
  const Kind kind = control.kind();
  const bool plain = kind == Kind::CommandButton || kind == Kind::Label || kind == Kind::PictureBox;
  if (box == nullptr && option == nullptr && list == nullptr && !plain) {
    unknownAct(control, "clicked");
  }
  if (!control.usable()) {
    return false;
  }
  if (box != nullptr) {
    box->setValue(box->value() == CheckBox::kClear ? CheckBox::kTicked : CheckBox::kClear);
  } else if (option != nullptr) {
    option->setValue(true);
  } else if (list != nullptr) {
    if (list->listIndex() >= 0) {
      list->click.raise();
    }
  } else {
    raiseClick<CommandButton, Label, PictureBox>(control);
  }
  return true;
}

bool type(Control& control, std::string_view text) {
  auto* box = as<TextBox>(control);
  auto* combo = as<ComboBox>(control);
  if (box == nullptr && combo == nullptr) {
    unknownAct(control, "typed into");
  }
  if (!control.usable()) {
    return false;
  }
  if (box != nullptr) {
    box->setText(text);
  } else {
    combo->setText(text);
  }
  return true;
}

bool select(Control& control, int index) {
  auto* list = as<ListControl>(control);
  if (list == nullptr) {
    unknownAct(control, "selected from");
  }
  if (!control.usable()) {
    return false;
  }
  pick(*list, index);
  return true;
}

bool press(Control& control, Key key) {
  auto* box = as<TextBox>(control);
  auto* combo = as<ComboBox>(control);
  if (box == nullptr && combo == nullptr) {
    unknownAct(control, "typed into");
  }
  if (!control.usable()) {
    return false;
  }
  (box != nullptr ? box->keyDown : combo->keyDown).raise(key);
  return true;
}

bool drag(ListBox& from, std::string_view text, ListBox& onto) {
  if (!from.usable() || !onto.usable()) {
    return false;
  }
  int index = 0;
  while (index < from.listCount() && from.list(index) != text) {
    ++index;
  }
  if (index == from.listCount()) {
    throw PropertyFault(kInvalidPropertyValue,
                        from.fullName() + " holds no item \"" + std::string(text) + '"');
  }
  pick(from, index);
  DragData data;
  from.startDrag.raise(data);
  const bool goesOn = !data.text.empty() && data.allowedEffects != kDropEffectNone;
  if (goesOn && onto.oleDropMode() == ListBox::kDropManual) {
    onto.drop.raise(data);
  }
  return true;
}

}  // namespace lumodevice::toolkit::hand
