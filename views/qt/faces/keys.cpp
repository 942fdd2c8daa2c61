#include "views/qt/faces/keys.hpp"

#include "lumodevice/toolkit/drawing.hpp"
#include "lumodevice/toolkit/hand.hpp"

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
  toolkit::Control* const button = toolkit::clickedByEnter(field);
  if (button == nullptr) {
    return false;
  }
  stage.act(field, [button] { toolkit::hand::click(*button); });
  return true;
}

}  // namespace lumodevice::qt
