#include "lumodevice/qt/information_box.hpp"

#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

#include "views/qt/texts.hpp"

namespace lumodevice::qt {

void InformationBoxes::operator()(std::string_view text) const {
  QWidget* const over = widget_ ? widget_->window() : QApplication::activeWindow();
  // The window under it may go while it stands there, and takes it along.
  const QPointer<QMessageBox> box =
      new QMessageBox(QMessageBox::Information, QString(), QString(), QMessageBox::Ok, over);
  box->setTextFormat(Qt::PlainText);
  box->setText(shown(text));
  box->exec();
  delete box;
}

}  // namespace lumodevice::qt
