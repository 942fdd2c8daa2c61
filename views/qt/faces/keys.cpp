#include "views/qt/faces/keys.hpp"

#include <algorithm>

#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::qt {

std::optional<toolkit::Key> fieldKey(const QKeyEvent& event) {
  if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
    return std::nullopt;
  }
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return toolkit::Key::Enter;
    case Qt::Key_Up:
      return toolkit::Key::Up;
    case Qt::Key_Down:
      return toolkit::Key::Down;
    default:
      return std::nullopt;
  }
}

bool clickEntered(Stage& stage, const toolkit::Control& field) {
  const auto& all = field.surface().controls();
  const auto found = std::find_if(all.begin(), all.end(), [&field](const auto& control) {
    return control->fullName() == field.look().enterClicks;
  });
  if (found == all.end()) {
    return false;
  }
  stage.act(field, [button = found->get()] { toolkit::hand::click(*button); });
  return true;
}

}  // namespace lumodevice::qt
