// The program as it is, which also keeps a file up to date that says where its widgets are on the
// screen and what they show, so that a script can put hands on them: "name x y width height text",
// a line a visible widget.

#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtGui/QScreen>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPlainTextEdit>
#include <cstdio>

#include "hosts/zanpanel/windows/program.hpp"

namespace {

QString textOf(const QWidget& widget) {
  if (const auto* label = dynamic_cast<const QLabel*>(&widget)) {
    return label->text();
  }
  if (const auto* box = dynamic_cast<const QComboBox*>(&widget)) {
    return box->currentText();
  }
  if (const auto* line = dynamic_cast<const QLineEdit*>(&widget)) {
    return line->text();
  }
  if (const auto* button = dynamic_cast<const QAbstractButton*>(&widget)) {
    return (button->isChecked() ? "* " : "") + button->text();
  }
  if (const auto* text = dynamic_cast<const QPlainTextEdit*>(&widget)) {
    return text->toPlainText().right(20000);
  }
  if (const auto* list = dynamic_cast<const QAbstractItemView*>(&widget)) {
    QStringList items;
    for (int i = 0; list->model() != nullptr && i < list->model()->rowCount(); ++i) {
      items << list->model()->index(i, 0).data().toString();
    }
    return items.join('|');
  }
  if (const auto* message = dynamic_cast<const QMessageBox*>(&widget)) {
    return message->text();
  }
  return widget.isWindow() ? widget.windowTitle() : QString();
}

QString nameOf(const QWidget& widget) {
  return widget.objectName().isEmpty() ? QString::fromLatin1(widget.metaObject()->className())
                                       : widget.objectName();
}

QString line(const QWidget& widget, const QString& name, const QRect& place, const QString& text) {
  const double scale = widget.devicePixelRatioF();
  const QPoint corner = widget.mapToGlobal(place.topLeft());
  return QStringLiteral("%1\t%2\t%3\t%4\t%5\t%6\n")
      .arg(QString(name).replace(' ', '_'))
      .arg(qRound(corner.x() * scale))
      .arg(qRound(corner.y() * scale))
      .arg(qRound(place.width() * scale))
      .arg(qRound(place.height() * scale))
      .arg(QString(text).replace('\n', ' ').replace('\t', ' '));
}

void witness(const QString& file) {
  QString all;
  for (const QWidget* const widget : QApplication::allWidgets()) {
    if (!widget->isVisible()) {
      continue;
    }
    all += line(*widget, nameOf(*widget), widget->rect(), textOf(*widget));
    // The items of a list, as "List1:CH3".
    if (const auto* list = dynamic_cast<const QAbstractItemView*>(widget)) {
      for (int i = 0; list->model() != nullptr && i < list->model()->rowCount(); ++i) {
        const QModelIndex item = list->model()->index(i, 0);
        all += line(*list->viewport(), nameOf(*widget) + ':' + item.data().toString(),
                    list->visualRect(item), {});
      }
    }
  }
  QFile beside(file + ".new");
  if (beside.open(QIODevice::WriteOnly)) {
    beside.write(all.toUtf8());
    beside.close();
    (void)std::rename(qPrintable(file + ".new"), qPrintable(file));
  }
}

}  // namespace

int main(int count, char** words) {
  QTimer timer;
  const QString file = qEnvironmentVariable("ZANPANEL_WITNESS");
  QObject::connect(&timer, &QTimer::timeout, [&] { witness(file); });
  return zanpanel::runProgram(count, words, [&] {
    constexpr int kEvery = 100;
    timer.moveToThread(qApp->thread());
    timer.start(kEvery);
  });
}
