#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace bench {

/// A window that ends the program when it has been painted for the first time.
class PaintedOnce : public QWidget {
 public:
  PaintedOnce() { resize(760, 528); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QWidget::paintEvent(event);
    QTimer::singleShot(0, [] { QApplication::quit(); });
  }
};

}  // namespace bench
