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

/// What a frame is painted in, and its edge: it stands out a little from the window.
[[nodiscard]] QColor cardColour(const QPalette& around);
[[nodiscard]] QColor edgeColour(const QPalette& around);

/// What is painted behind something switched on that must not be overlooked, and the letters on it.
[[nodiscard]] QColor alarmColour();
[[nodiscard]] QColor onAlarmColour();

}  // namespace lumodevice::qt
