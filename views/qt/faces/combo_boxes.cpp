#include <QtGui/QWheelEvent>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStylePainter>
#include <functional>
#include <limits>
#include <utility>

#include "lumodevice/toolkit/hand.hpp"
#include "views/qt/faces/face.hpp"
#include "views/qt/faces/keys.hpp"
#include "views/qt/texts.hpp"

namespace lumodevice::qt {

namespace {

using toolkit::Property;

class ComboWidget : public QComboBox {
 public:
  ComboWidget(QWidget& parent, std::function<void(toolkit::Key)> onKey)
      : QComboBox(&parent), onKey_(std::move(onKey)) {
    setInsertPolicy(QComboBox::NoInsert);
    setMaxVisibleItems(16);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  }
  /// Where nothing is typed it shows the text that it was given, entry or not.
  void setShownText(const QString& text) {
    text_ = text;
    if (isEditable()) {
      if (lineEdit()->text() != text) {
        setEditText(text);
        if (!hasFocus()) {
          lineEdit()->setCursorPosition(0);
        }
      }
    } else {
      update();
    }
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    if (isEditable()) {
      QComboBox::paintEvent(event);
      return;
    }
    QStylePainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const int room =
        style()
            ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this)
            .width();
    option.currentText = fontMetrics().elidedText(text_, Qt::ElideRight, room);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
  }
  /// What is picked is sent at once; nobody means that by turning a wheel over it.
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
  void keyPressEvent(QKeyEvent* event) override {
    if (const auto key = fieldKey(*event)) {
      onKey_(*key);
    }
    QComboBox::keyPressEvent(event);
    event->accept();
  }

 private:
  std::function<void(toolkit::Key)> onKey_;
  QString text_;
};

class ComboBoxFace : public Face {
 public:
  ComboBoxFace(Stage& stage, toolkit::ComboBox& box, QWidget& parent)
      : ComboBoxFace(stage, box, *new ComboWidget(parent, [&stage, &box](toolkit::Key key) {
                       stage.act(box, [&box, key] { toolkit::hand::press(box, key); });
                       if (key == toolkit::Key::Enter) {
                         clickEntered(stage, box);
                       }
                     })) {}

  void draw(Property property, int item) override {
    switch (property) {
      case Property::ItemInserted:
        combo_.insertItem(item, shown(box_.list(item)));
        break;
      case Property::ItemRemoved:
        combo_.removeItem(item);
        break;
      case Property::ItemsCleared:
        combo_.clear();
        break;
      case Property::ListIndex:
      case Property::Text:
        break;
      default:
        return;
    }
    drawSelection();
  }
  void drawAll() override {
    drawStyle();
    combo_.clear();
    for (int i = 0; i < box_.listCount(); ++i) {
      combo_.addItem(shown(box_.list(i)));
    }
    drawSelection();
  }

 private:
  ComboBoxFace(Stage& stage, toolkit::ComboBox& box, ComboWidget& combo)
      : Face(box, combo), stage_(stage), box_(box), combo_(combo) {
    QObject::connect(&combo, &QComboBox::activated, &combo, [this](int index) {
      // By its text too: the list may have become another one meanwhile.
      stage_.act(box_, [this, index, entry = typed(combo_.itemText(index))] {
        if (index < box_.listCount() && shown(box_.list(index)) == shown(entry)) {
          toolkit::hand::select(box_, index);
        } else {
          box_.confirm();
        }
      });
    });
  }

  void drawStyle() {
    const bool editable = box_.look().comboStyle == toolkit::ComboStyle::Editable;
    if (combo_.isEditable() == editable) {
      return;
    }
    combo_.setEditable(editable);
    if (editable) {
      combo_.setCompleter(nullptr);
      combo_.lineEdit()->setMaxLength(std::numeric_limits<int>::max());
      QObject::connect(combo_.lineEdit(), &QLineEdit::textEdited, &combo_, [this] {
        stage_.act(box_, [this] { toolkit::hand::type(box_, typed(combo_.currentText())); });
      });
    }
  }

  void drawSelection() {
    combo_.setCurrentIndex(box_.listIndex());
    combo_.setShownText(shown(box_.text()));
  }

  Stage& stage_;
  toolkit::ComboBox& box_;
  ComboWidget& combo_;
};

}  // namespace

std::unique_ptr<Face> makeComboBox(Stage& stage, toolkit::ComboBox& box, QWidget& parent) {
  return std::make_unique<ComboBoxFace>(stage, box, parent);
}

}  // namespace lumodevice::qt
