#include "hosts/zanpanel/windows/panel_style.hpp"

#include <QtGui/QPainter>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QStyleOption>

#include "hosts/zanpanel/windows/colours.hpp"

namespace zanpanel {

PanelStyle::PanelStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}

/// Fusion draws their outline darker than the window, which a dark window swallows.
void PanelStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool round = element == PE_IndicatorRadioButton;
  const Colours colours(option->palette);
  if (!colours.dark || (!round && element != PE_IndicatorCheckBox)) {
    return;
  }
  constexpr qreal kHalf = 0.5;
  const QRectF outline = QRectF(option->rect).adjusted(kHalf, kHalf, -kHalf, -kHalf);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing, round);
  painter->setBrush(Qt::NoBrush);
  painter->setPen(QPen(colours.faint, 1));
  if (round) {
    painter->drawEllipse(outline);
  } else {
    painter->drawRect(outline);
  }
  painter->restore();
}

}  // namespace zanpanel
