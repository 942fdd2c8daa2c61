#pragma once

#include <QtWidgets/QProxyStyle>

namespace zanpanel {

/// Fusion, whose check boxes and option buttons can be seen on a dark window, too.
class PanelStyle : public QProxyStyle {
 public:
  PanelStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace zanpanel
