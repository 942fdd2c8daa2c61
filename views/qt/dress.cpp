#include "views/qt/dress.hpp"

#include <QtGui/QFont>
#include <QtGui/QPalette>

#include "views/qt/texts.hpp"

namespace lumodevice::qt {

namespace {

bool isDark(const QPalette& palette) {
  constexpr int kMiddle = 128;
  return palette.color(QPalette::Window).lightness() < kMiddle;
}

QColor mixed(const QColor& from, const QColor& to, double share) {
  const auto part = [share](int a, int b) { return qRound(a + (b - a) * share); };
  return {part(from.red(), to.red()), part(from.green(), to.green()), part(from.blue(), to.blue())};
}

}  // namespace

QColor cardColour(const QPalette& around) {
  const QColor window = around.color(QPalette::Window);
  return isDark(around) ? mixed(window, around.color(QPalette::WindowText), 0.05)
                        : mixed(window, around.color(QPalette::Base), 0.65);
}

QColor edgeColour(const QPalette& around) {
  return mixed(around.color(QPalette::Window), around.color(QPalette::WindowText), 0.18);
}

QColor alarmColour() {
  return {0xc6, 0x28, 0x28};
}

QColor onAlarmColour() {
  return Qt::white;
}

QColor colourOf(toolkit::ColorRole role, const QPalette& around) {
  const bool dark = isDark(around);
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
