#include "hosts/zanpanel/report/print.hpp"

#include <QtGui/QImage>
#include <QtGui/QPagedPaintDevice>
#include <QtGui/QPainter>

namespace zanpanel {

bool printPicture(const QImage& picture, QPagedPaintDevice& device) {
  QPainter painter;
  if (picture.isNull() || !painter.begin(&device)) {
    return false;
  }
  const QSize room = painter.viewport().size();
  const QSize size = picture.size().scaled(room, Qt::KeepAspectRatio);
  painter.drawImage(QRect(QPoint((room.width() - size.width()) / 2, 0), size), picture);
  return painter.end();
}

}  // namespace zanpanel
