#pragma once

#include <QtGui/QKeyEvent>
#include <optional>

#include "lumodevice/toolkit/fields.hpp"
#include "views/qt/faces/face.hpp"

namespace lumodevice::qt {

/// The key that fields know, if it is one and pressed by itself.
[[nodiscard]] std::optional<toolkit::Key> fieldKey(const QKeyEvent& event);

/// The Enter key in a field clicks the button that its look names; false where it names none.
bool clickEntered(Stage& stage, const toolkit::Control& field);

}  // namespace lumodevice::qt
