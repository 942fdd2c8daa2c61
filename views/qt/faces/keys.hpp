#pragma once

#include <QtGui/QKeyEvent>
#include <optional>

#include "lumodevice/toolkit/fields.hpp"

namespace lumodevice::qt {

/// The key that fields know, if it is one and pressed by itself.
[[nodiscard]] inline std::optional<toolkit::Key> fieldKey(const QKeyEvent& event) {
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

}  // namespace lumodevice::qt
