#include "tests/support/form_acts.hpp"

#include <string>

#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::support {

void act(toolkit::Control& control, std::mt19937& random) {
  const auto number = [&random](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  const std::string text(static_cast<std::size_t>(number(9)), static_cast<char>('a' + number(3)));
  switch (number(8)) {
    case 0:
      control.setEnabled(number(3) != 0);
      return;
    case 1:
      control.setVisible(number(3) != 0);
      return;
    case 2:
      control.bringToFront();
      return;
    case 3: {
      toolkit::Look look = control.look();
      look.bold = number(2) == 0;
      look.toolTip = text;
      look.accessibleName = text;
      look.mnemonic = number(4) - 1;
      look.comboStyle =
          number(2) == 0 ? toolkit::ComboStyle::Editable : toolkit::ComboStyle::DropDownList;
      control.setLook(look);
      return;
    }
    default:
      break;
  }
  if (auto* const box = dynamic_cast<toolkit::TextBox*>(&control)) {
    box->setText(text);
  } else if (auto* const check = dynamic_cast<toolkit::CheckBox*>(&control)) {
    check->setValue(number(3));
    check->setCaption(text + "&" + text);
  } else if (auto* const option = dynamic_cast<toolkit::OptionButton*>(&control)) {
    option->setValue(number(3) != 0);
  } else if (auto* const button = dynamic_cast<toolkit::CommandButton*>(&control)) {
    button->setCaption(text);
  } else if (auto* const label = dynamic_cast<toolkit::Label*>(&control)) {
    label->setCaption(text + "&&" + text);
  } else if (auto* const list = dynamic_cast<toolkit::ListControl*>(&control)) {
    const int count = list->listCount();
    switch (number(6)) {
      case 0:
        list->clear();
        break;
      case 1:
        if (count > 0) {
          list->removeItem(number(count));
        }
        break;
      case 2:
        list->setListIndex(number(count + 1) - 1);
        break;
      case 3:
        list->addItem(text, number(count + 1));
        break;
      default:
        list->addItem(text);
        break;
    }
    if (auto* const combo = dynamic_cast<toolkit::ComboBox*>(list); combo != nullptr && number(2)) {
      combo->setText(text);
    }
  }
}

void expose(toolkit::Control& control) {
  for (const auto& other : control.surface().controls()) {
    const bool layer = other->kind() == toolkit::Kind::Frame ||
                       other->kind() == toolkit::Kind::PictureBox ||
                       other->kind() == toolkit::Kind::Image;
    if (layer) {
      other->setVisible(false);
    }
  }
  for (toolkit::Control* each = &control; each != nullptr; each = each->container()) {
    each->setVisible(true);
    each->setEnabled(true);
  }
}

}  // namespace lumodevice::support
