#include "views/qt/dress.hpp"

#include <QtGui/QFont>
#include <QtGui/QPalette>

#include "views/qt/texts.hpp"

namespace lumodevice::qt {

QColor colourOf(toolkit::ColorRole role, const QPalette& around) {
  constexpr int kMiddle = 128;
  const bool dark = around.color(QPalette::Window).lightness() < kMiddle;
  switch (role) {
    case toolkit::ColorRole::Heading:
      return dark ? QColor(0x8a, 0xbc, 0xf5) : QColor(0x1b, 0x4f, 0x91);
    case toolkit::ColorRole::Value:
      return dark ? QColor(0x7d, 0xe3, 0xa5) : QColor(0x0b, 0x5d, 0x36);
    case toolkit::ColorRole::Warning:
      return dark ? QColor(0xff, 0x9b, 0x8f) : QColor(0xb0, 0x21, 0x1a);
    case toolkit::ColorRole::Hint:
      return dark ? QColor(0xaa, 0xb4, 0xbf) : QColor(0x56, 0x61, 0x6d);
    case toolkit::ColorRole::Normal:
      break;
  }
  return around.color(QPalette::WindowText);
}

void dress(QWidget& widget, const toolkit::Look& look, const Scale& scale, const QPalette& around) {
  QFont font;
  font.setResolveMask(0);
  if (look.fontSize > 0) {
    font.setPointSizeF(scale.points(look.fontSize));
  }
  if (look.bold) {
    font.setBold(true);
  }
  widget.setFont(font);

  QPalette palette;
  palette.setResolveMask(0);
  if (look.colorRole != toolkit::ColorRole::Normal) {
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
      for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(group, role, colourOf(look.colorRole, around));
      }
    }
  }
  widget.setPalette(palette);

  widget.setToolTip(plain(look.toolTip));
  widget.setAccessibleName(shown(look.accessibleName));
  widget.setAccessibleDescription(shown(look.toolTip));
}

}  // namespace lumodevice::qt
