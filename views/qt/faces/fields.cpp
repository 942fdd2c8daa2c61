#include <QtWidgets/QLineEdit>
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

class Field : public QLineEdit {
 public:
  Field(QWidget& parent, std::function<void(toolkit::Key)> onKey)
      : QLineEdit(&parent), onKey_(std::move(onKey)) {
    setMaxLength(std::numeric_limits<int>::max());  // an answer may be longer than Qt's own limit
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (const auto key = fieldKey(*event)) {
      onKey_(*key);
      event->accept();
    } else {
      QLineEdit::keyPressEvent(event);
    }
  }

 private:
  std::function<void(toolkit::Key)> onKey_;
};

class TextBoxFace : public Face {
 public:
  TextBoxFace(Stage& stage, toolkit::TextBox& box, QWidget& parent)
      : TextBoxFace(stage, box, *new Field(parent, [&stage, &box](toolkit::Key key) {
                      stage.act(box, [&box, key] { toolkit::hand::press(box, key); });
                    })) {}

  void draw(Property property, int /*item*/) override {
    if (property == Property::Text) {
      drawText();
    }
  }
  void drawAll() override {
    constexpr Qt::Alignment kAlignments[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
    edit_.setAlignment(kAlignments[static_cast<int>(box_.look().alignment)] | Qt::AlignVCenter);
    // A reading is looked at and copied, never typed over.
    edit_.setReadOnly(box_.look().colorRole == toolkit::ColorRole::Value);
    drawText();
  }

 private:
  TextBoxFace(Stage& stage, toolkit::TextBox& box, Field& edit)
      : Face(box, edit), box_(box), edit_(edit) {
    QObject::connect(&edit, &QLineEdit::textEdited, &edit, [this, &stage] {
      // What stands there when it is done: more may have been typed by then.
      stage.act(box_, [this] { toolkit::hand::type(box_, typed(edit_.text())); });
    });
  }

  void drawText() {
    const QString text = shown(box_.text());
    if (edit_.text() != text) {
      edit_.setText(text);
      if (!edit_.hasFocus()) {
        edit_.setCursorPosition(0);
      }
    }
  }

  toolkit::TextBox& box_;
  Field& edit_;
};

}  // namespace

std::unique_ptr<Face> makeTextBox(Stage& stage, toolkit::TextBox& box, QWidget& parent) {
  return std::make_unique<TextBoxFace>(stage, box, parent);
}

}  // namespace lumodevice::qt
