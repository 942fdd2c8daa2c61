#include "views/qt/dress.hpp"

#include <QtGui/QFont>
#include <QtGui/QPalette>

#include "lumodevice/toolkit/drawing.hpp"
#include "views/qt/texts.hpp"

namespace lumodevice::qt {

namespace {

QColor asQt(toolkit::Colour colour) {
  return {colour.red, colour.green, colour.blue};
}

toolkit::Colour of(const QPalette& palette, QPalette::ColorRole role) {
  const QColor colour = palette.color(role);
  return {static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
          static_cast<std::uint8_t>(colour.blue())};
}

}  // namespace

QColor cardColour(const QPalette& around) {
  return asQt(toolkit::cardColour(of(around, QPalette::Window), of(around, QPalette::Base),
                                  of(around, QPalette::WindowText)));
}

QColor edgeColour(const QPalette& around) {
  return asQt(toolkit::edgeColour(of(around, QPalette::Window), of(around, QPalette::WindowText)));
}

QColor alarmColour() {
  return asQt(toolkit::kAlarm);
}

QColor onAlarmColour() {
  return Qt::white;
}

QColor colourOf(toolkit::ColorRole role, const QPalette& around) {
  return role == toolkit::ColorRole::Normal
             ? around.color(QPalette::WindowText)
             : asQt(toolkit::colourOf(role, toolkit::isDark(of(around, QPalette::Window))));
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
