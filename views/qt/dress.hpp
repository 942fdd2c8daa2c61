#pragma once

#include <QtWidgets/QWidget>

#include "lumodevice/toolkit/look.hpp"
#include "views/qt/scale.hpp"

namespace lumodevice::qt {

/// Gives a widget the look of its control, but for what each kind draws by itself (alignment,
/// mnemonic, the style of a combo box).
void dress(QWidget& widget, const toolkit::Look& look, const Scale& scale, const QPalette& around);

/// The colour that says it, to be read on the window and field colours of the palette.
[[nodiscard]] QColor colourOf(toolkit::ColorRole role, const QPalette& around);

}  // namespace lumodevice::qt
