#include "lumodevice/toolkit/hand.hpp"

#include <memory>
#include <string>
#include <utility>

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
  const bool again = list.listIndex() == index;
  list.setListIndex(index);
  if (again) {
    list.click.raise();
  }
}

/// Takes the act to the control, unless that cannot be used, and has it confirm what it holds then.
template <typename Act>
bool perform(Control& control, Act act) {
  const std::shared_ptr<void> held = control.hold();
  const std::weak_ptr<void> life = control.life();
  const bool usable = control.usable();
  EveryStep steps;
  if (usable) {
    steps.take(act);
  }
  if (!life.expired()) {
    steps.take([&] { control.confirm(); });
  }
  try {
    steps.finish();
  } catch (const OperationEnded&) {
  }
  return usable;
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
  const bool plain = as<CommandButton>(control) != nullptr || as<Label>(control) != nullptr ||
                     as<Pictured>(control) != nullptr;
  if (box == nullptr && option == nullptr && list == nullptr && !plain) {
    unknownAct(control, "clicked");
  }
  return perform(control, [&] {
    if (box != nullptr) {
      box->setValue(box->value() == CheckBox::kClear ? CheckBox::kTicked : CheckBox::kClear);
    } else if (option != nullptr) {
      option->setValue(true);
    } else if (list != nullptr) {
      if (list->listIndex() >= 0) {
        pick(*list, list->listIndex());
      }
    } else {
      raiseClick<CommandButton, Label, Pictured>(control);
    }
  });
}

bool mouseDown(Control& control, const MousePress& press) {
  auto* picture = as<Pictured>(control);
  if (picture == nullptr) {
    unknownAct(control, "pressed at a position");
  }
  return perform(control, [&] { picture->mouseDown.raise(press); });
}

bool type(Control& control, std::string_view text) {
  auto* box = as<TextBox>(control);
  auto* combo = as<ComboBox>(control);
  if (box == nullptr && combo == nullptr) {
    unknownAct(control, "typed into");
  }
  return perform(control, [&] {
    if (box != nullptr) {
      box->setText(text);
    } else {
      combo->setText(text);
    }
  });
}

bool select(Control& control, int index) {
  auto* list = as<ListControl>(control);
  if (list == nullptr) {
    unknownAct(control, "selected from");
  }
  return perform(control, [&] { pick(*list, index); });
}

bool press(Control& control, Key key) {
  auto* box = as<TextBox>(control);
  auto* combo = as<ComboBox>(control);
  if (box == nullptr && combo == nullptr) {
    unknownAct(control, "typed into");
  }
  return perform(control, [&] { (box != nullptr ? box->keyDown : combo->keyDown).raise(key); });
}

Drag::Drag(ListBox& from, int index) : from_(&from) {
  const std::weak_ptr<void> life = from.life();
  perform(from, [&] {
    pick(from, index);
    if (!life.expired()) {
      from.startDrag.raise(data_);
    }
  });
  if (!data_.text.empty() && data_.allowedEffects != kDropEffectNone) {
    life_ = life;
  }
}

bool Drag::canDropOn(ListBox& onto) const {
  if (!inProgress() || &onto.surface() != &from_->surface() || !onto.usable() ||
      onto.oleDropMode() != ListBox::kDropManual) {
    return false;
  }
  int effect = data_.allowedEffects;
  onto.dragOver.raise(data_, effect);
  return effect != kDropEffectNone && inProgress();
}

bool Drag::dropOn(ListBox& onto) {
  const Drag drag = std::move(*this);  // which is over for whoever asks meanwhile, and may go
  if (!drag.inProgress()) {
    return false;
  }
  bool dropped = false;
  perform(onto, [&] {
    dropped = drag.canDropOn(onto);
    if (dropped) {
      onto.drop.raise(drag.data_);
    }
  });
  if (drag.inProgress()) {
    drag.from_->confirm();
  }
  return dropped;
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
  Drag(from, index).dropOn(onto);
  return true;
}

}  // namespace lumodevice::toolkit::hand
