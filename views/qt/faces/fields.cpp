#include <QtGui/QFontMetrics>
#include <QtWidgets/QLineEdit>
#include <algorithm>
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
  struct Hand {
    std::function<void(toolkit::Key)> onKey;
    /// The field is left, or left as it was.
    std::function<void()> onLeave;
    std::function<void()> onEscape;
  };

  explicit Field(QWidget& parent) : QLineEdit(&parent) {
    setMaxLength(std::numeric_limits<int>::max());  // an answer may be longer than Qt's own limit
  }
  void setHand(Hand hand) { hand_ = std::move(hand); }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (const auto key = fieldKey(*event)) {
      hand_.onKey(*key);
      event->accept();
      return;
    }
    if (event->key() == Qt::Key_Escape) {
      hand_.onEscape();
    }
    QLineEdit::keyPressEvent(event);
  }
  void focusOutEvent(QFocusEvent* event) override {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) {
      hand_.onLeave();
    }
  }

 private:
  Hand hand_;
};

class TextBoxFace : public Face {
 public:
  TextBoxFace(Stage& stage, toolkit::TextBox& box, QWidget& parent)
      : TextBoxFace(stage, box, *new Field(parent)) {}

  void draw(Property property, int /*item*/) override {
    if (property == Property::Text) {
      drawText();
    }
  }
  void drawAll() override {
    constexpr Qt::Alignment kAlignments[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
    edit_.setAlignment(kAlignments[static_cast<int>(box_.look().alignment)] | Qt::AlignVCenter);
    // A reading is looked at and copied, never typed over.
    edit_.setReadOnly(isReading());
    letters_ = edit_.font();
    drawText();
  }

 private:
  TextBoxFace(Stage& stage, toolkit::TextBox& box, Field& edit)
      : Face(box, edit), stage_(stage), box_(box), edit_(edit) {
    edit.setHand({.onKey = [this](toolkit::Key key) { press(key); },
                  .onLeave = [this] { completed(); },
                  .onEscape = [this] { drawText(); }});
    QObject::connect(&edit, &QLineEdit::textEdited, &edit, [this] {
      if (!box_.look().typedWhole) {
        type();
      }
    });
  }

  void type() {
    // What stands there when it is done: more may have been typed by then.
    stage_.act(box_, [this] { toolkit::hand::type(box_, typed(edit_.text())); });
  }
  void completed() {
    if (box_.look().typedWhole && edit_.text() != shown(box_.text())) {
      type();
    }
  }
  void press(toolkit::Key key) {
    if (key == toolkit::Key::Enter) {
      completed();
    }
    stage_.act(box_, [&box = box_, key] { toolkit::hand::press(box, key); });
    if (key == toolkit::Key::Enter && clickEntered(stage_, box_)) {
      edit_.selectAll();  // the next value is typed over this one
    }
  }

  [[nodiscard]] bool isReading() const {
    return box_.look().colorRole == toolkit::ColorRole::Value;
  }

  void drawText() {
    const QString text = shown(box_.text());
    if (isReading()) {
      fit(text);
    }
    if (edit_.text() != text) {
      edit_.setText(text);
      if (!edit_.hasFocus()) {
        edit_.setCursorPosition(0);
      }
    }
  }

  /// A number of which a part cannot be seen would be another number.
  void fit(const QString& text) {
    constexpr double kSmallest = 0.4;
    constexpr int kBeside = 12;
    const int needed = QFontMetrics(letters_, &edit_).horizontalAdvance(text);
    const double share = static_cast<double>(edit_.width() - kBeside) / std::max(needed, 1);
    QFont letters = letters_;
    letters.setPointSizeF(letters.pointSizeF() * std::clamp(share, kSmallest, 1.0));
    if (edit_.font() != letters) {
      edit_.setFont(letters);
    }
  }

  Stage& stage_;
  toolkit::TextBox& box_;
  Field& edit_;
  QFont letters_;
};

}  // namespace

std::unique_ptr<Face> makeTextBox(Stage& stage, toolkit::TextBox& box, QWidget& parent) {
  return std::make_unique<TextBoxFace>(stage, box, parent);
}

}  // namespace lumodevice::qt
