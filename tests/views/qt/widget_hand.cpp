#include "tests/views/qt/widget_hand.hpp"

#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <chrono>
#include <stdexcept>

namespace lumodevice::support {

namespace {

QString textOf(std::string_view bytes) {
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

/// Beside the left edge, where a check box has its mark.
QPoint markOf(const QWidget& widget) {
  constexpr int kInset = 8;
  return {kInset, widget.height() / 2};
}

QLineEdit& editOf(QWidget& widget) {
  if (auto* const combo = qobject_cast<QComboBox*>(&widget);
      combo != nullptr && combo->isEditable()) {
    return *combo->lineEdit();
  }
  if (auto* const edit = qobject_cast<QLineEdit*>(&widget)) {
    return *edit;
  }
  throw std::logic_error(widget.objectName().toStdString() + " is not typed into");
}

void mouse(QEvent::Type type, QWidget& widget, QPoint at, bool down) {
  QWindow* const window = widget.window()->windowHandle();
  const QPoint inWindow = widget.mapTo(widget.window(), at);
  const bool moves = type == QEvent::MouseMove;
  qt_handleMouseEvent(window, inWindow, widget.mapToGlobal(at),
                      down ? Qt::LeftButton : Qt::NoButton, moves ? Qt::NoButton : Qt::LeftButton,
                      type, Qt::NoModifier, 0);
}

}  // namespace

void WidgetHand::flush() {
  QCoreApplication::sendPostedEvents();
}

QWidget& WidgetHand::widget(const toolkit::Control& control) const {
  QWidget* const found = view_.widgetOf(control);
  if (found == nullptr || !found->isVisibleTo(&view_)) {
    throw std::logic_error("an operator does not see " + control.fullName());
  }
  return *found;
}

bool WidgetHand::click(const toolkit::Control& control) {
  if (const auto* const list = dynamic_cast<const toolkit::ListControl*>(&control)) {
    return select(*list, list->listIndex());
  }
  const bool usable = control.usable();
  QWidget& target = widget(control);
  QTest::mouseClick(&target, Qt::LeftButton, {}, markOf(target));
  flush();
  return usable;
}

bool WidgetHand::type(const toolkit::Control& control, std::string_view text) {
  QLineEdit& edit = editOf(widget(control));
  const bool usable = control.usable() && !edit.isReadOnly();
  if (usable) {
    edit.setFocus();
    edit.selectAll();
  }
  if (text.empty()) {
    QTest::keyClick(&edit, Qt::Key_Delete);
  } else {
    for (const QChar letter : textOf(text)) {
      constexpr char16_t kLastOnKeys = 0x7e;
      if (letter.unicode() <= kLastOnKeys) {
        QTest::keyClick(&edit, letter.toLatin1());
      } else {
        QTest::sendKeyEvent(QTest::Click, &edit, Qt::Key_unknown, letter, Qt::NoModifier);
      }
    }
  }
  edit.clearFocus();
  flush();
  return usable;
}

bool WidgetHand::press(const toolkit::Control& control, toolkit::Key key) {
  const bool usable = control.usable();
  QTest::keyClick(&widget(control), key == toolkit::Key::Enter ? Qt::Key_Return
                                    : key == toolkit::Key::Up  ? Qt::Key_Up
                                                               : Qt::Key_Down);
  flush();
  return usable;
}

bool WidgetHand::select(const toolkit::Control& control, int index) {
  const bool usable = control.usable();
  QWidget& target = widget(control);
  if (auto* const combo = qobject_cast<QComboBox*>(&target)) {
    if (usable) {
      combo->showPopup();
      combo->view()->setCurrentIndex(combo->model()->index(index, 0));
      QTest::keyClick(combo->view(), Qt::Key_Return);
    }
  } else if (auto* const list = qobject_cast<QListWidget*>(&target)) {
    const QPoint at = list->visualItemRect(list->item(index)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
  } else {
    throw std::logic_error(control.fullName() + " has no entries");
  }
  flush();
  return usable;
}

bool WidgetHand::drag(const toolkit::ListBox& from, std::string_view text,
                      const toolkit::ListBox& onto) {
  if (!from.usable() || !onto.usable()) {
    return false;
  }
  auto& source = dynamic_cast<QListWidget&>(widget(from));
  auto& target = dynamic_cast<QListWidget&>(widget(onto));
  const auto items = source.findItems(textOf(text), Qt::MatchExactly);
  if (items.empty()) {
    throw std::logic_error(from.fullName() + " does not show " + std::string(text));
  }
  const QPoint begin = source.visualItemRect(items.front()).center();
  const QPoint end = target.viewport()->rect().center();
  mouse(QEvent::MouseButtonPress, *source.viewport(), begin, true);
  // The drag has a loop of its own, in which the mouse goes on when the screen has heard of it.
  constexpr std::chrono::milliseconds kStep{60};
  QTimer::singleShot(kStep, &target, [&target, end] {
    mouse(QEvent::MouseMove, *target.viewport(), end - QPoint(2, 2), true);
  });
  QTimer::singleShot(2 * kStep, &target,
                     [&target, end] { mouse(QEvent::MouseMove, *target.viewport(), end, true); });
  QTimer::singleShot(4 * kStep, &target, [&target, end] {
    mouse(QEvent::MouseButtonRelease, *target.viewport(), end, false);
  });
  mouse(QEvent::MouseMove, *source.viewport(), begin + QPoint(0, 30), true);
  flush();
  QTest::qWait(static_cast<int>(kStep.count()));
  return true;
}

}  // namespace lumodevice::support
