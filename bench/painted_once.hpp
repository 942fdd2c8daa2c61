#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace bench {

/// A window that ends the program when it has been painted for the first time. What covers all of
/// it is painted without it, so any widget counts.
class PaintedOnce : public QWidget {
 public:
  PaintedOnce() {
    resize(760, 528);
    QApplication::instance()->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* /*receiver*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      QTimer::singleShot(0, [] { QApplication::quit(); });
    }
    return false;
  }
};

}  // namespace bench
