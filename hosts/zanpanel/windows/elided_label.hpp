#pragma once

#include <QtGui/QPainter>
#include <QtWidgets/QLabel>

namespace zanpanel {

/// One line, cut with an ellipsis where there is no room for all of it.
class ElidedLabel : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.drawText(contentsRect(), static_cast<int>(alignment()),
                     fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
  }
};

}  // namespace zanpanel
