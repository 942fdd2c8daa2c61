#include <QtCore/QMimeData>
#include <QtGui/QDrag>
#include <QtGui/QDragMoveEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QListWidget>
#include <memory>
#include <utility>

#include "lumodevice/toolkit/hand.hpp"
#include "views/qt/faces/face.hpp"
#include "views/qt/texts.hpp"

namespace lumodevice::qt {

namespace {

using toolkit::Property;
using toolkit::hand::Drag;

/// What Qt takes for the source of a drag. It belongs to no view, so that it outlives one that goes
/// during the drag.
class DragSource : public QObject {
 public:
  DragSource(toolkit::ListBox& from, int index) : drag(from, index) {}
  Drag drag;
};

class ListWidget : public QListWidget {
 public:
  ListWidget(Stage& stage, toolkit::ListBox& list, QWidget& parent)
      : QListWidget(&parent), stage_(stage), list_(list) {
    setUniformItemSizes(true);
    setSpacing(2);
    viewport()->setAcceptDrops(true);
    setDragDropMode(QAbstractItemView::DropOnly);
    setDropIndicatorShown(false);
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    QListWidget::mousePressEvent(event);
    const bool left = event->button() == Qt::LeftButton;
    pressed_ = left && indexAt(event->position().toPoint()).isValid() ? currentRow() : kNoItem;
    pressedAt_ = event->position().toPoint();
  }
  /// A drag may begin right after another one.
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  void mouseMoveEvent(QMouseEvent* event) override {
    const int far = (event->position().toPoint() - pressedAt_).manhattanLength();
    if (pressed_ >= 0 && far >= QApplication::startDragDistance()) {
      dragItem(std::exchange(pressed_, kNoItem));
    }
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    QListWidget::mouseReleaseEvent(event);
    if (pressed_ >= 0) {
      select(std::exchange(pressed_, kNoItem));
    }
  }
  void keyPressEvent(QKeyEvent* event) override {
    const int before = currentRow();
    QListWidget::keyPressEvent(event);
    if (currentRow() != before) {
      select(currentRow());
    }
  }

  void dragEnterEvent(QDragEnterEvent* event) override { dragMoveEvent(event); }
  void dragMoveEvent(QDragMoveEvent* event) override {
    const auto* source = dynamic_cast<DragSource*>(event->source());
    bool taken = false;
    try {
      taken = source != nullptr && source->drag.canDropOn(list_);
    } catch (...) {
      // Here Qt is on the stack; where it is dropped the same handler has its failure told.
    }
    if (taken) {
      event->setDropAction(Qt::MoveAction);
      event->accept();
    } else {
      event->ignore();
    }
  }
  void dropEvent(QDropEvent* event) override {
    auto* source = dynamic_cast<DragSource*>(event->source());
    if (source == nullptr) {
      event->ignore();
      return;
    }
    event->setDropAction(Qt::MoveAction);
    event->accept();
    const auto drag = std::make_shared<Drag>(std::move(source->drag));
    stage_.act(list_, [&list = list_, drag] { drag->dropOn(list); });
  }

 private:
  static constexpr int kNoItem = -1;

  void select(int index) {
    stage_.act(list_, [&list = list_, index, text = entry(index)] {
      if (index >= 0 && index < list.listCount() && list.list(index) == text) {
        toolkit::hand::select(list, index);
      } else {
        list.confirm();
      }
    });
  }

  void dragItem(int index) {
    stage_.act(list_, [&list = list_, index, text = entry(index)] {
      if (index >= list.listCount() || list.list(index) != text) {
        list.confirm();
        return;
      }
      DragSource source(list, index);
      if (source.drag.inProgress()) {
        auto* const mime = new QMimeData();
        mime->setText(shown(source.drag.data().text));
        auto* const drag = new QDrag(&source);
        drag->setMimeData(mime);
        drag->exec(Qt::MoveAction);
      }
    });
  }

  [[nodiscard]] std::string entry(int index) const {
    return index >= 0 && index < list_.listCount() ? list_.list(index) : std::string();
  }

  Stage& stage_;
  toolkit::ListBox& list_;
  int pressed_ = kNoItem;
  QPoint pressedAt_;
};

class ListBoxFace : public Face {
 public:
  ListBoxFace(Stage& stage, toolkit::ListBox& list, QWidget& parent)
      : ListBoxFace(list, *new ListWidget(stage, list, parent)) {}

  void draw(Property property, int item) override {
    switch (property) {
      case Property::ItemInserted:
        widget_.insertItem(item, shown(list_.list(item)));
        break;
      case Property::ItemRemoved:
        delete widget_.takeItem(item);
        break;
      case Property::ItemsCleared:
        widget_.clear();
        break;
      case Property::ListIndex:
        break;
      default:
        return;
    }
    widget_.setCurrentRow(list_.listIndex());
  }
  void drawAll() override {
    widget_.clear();
    for (int i = 0; i < list_.listCount(); ++i) {
      widget_.addItem(shown(list_.list(i)));
    }
    widget_.setCurrentRow(list_.listIndex());
  }

 private:
  ListBoxFace(toolkit::ListBox& list, ListWidget& widget)
      : Face(list, widget), list_(list), widget_(widget) {}

  toolkit::ListBox& list_;
  ListWidget& widget_;
};

}  // namespace

std::unique_ptr<Face> makeListBox(Stage& stage, toolkit::ListBox& list, QWidget& parent) {
  return std::make_unique<ListBoxFace>(stage, list, parent);
}

}  // namespace lumodevice::qt
