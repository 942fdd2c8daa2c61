#include <QtGui/QMouseEvent>
#include <QtWidgets/QLabel>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStylePainter>
#include <functional>
#include <utility>

#include "lumodevice/toolkit/hand.hpp"
#include "views/qt/faces/face.hpp"
#include "views/qt/texts.hpp"

namespace lumodevice::qt {

namespace {

/// A text that is too long for its place ends in dots. QLabel itself would show the marks of a
/// caption that leads nowhere.
class LabelWidget : public QLabel {
 public:
  LabelWidget(QWidget& parent, std::function<void()> onClick)
      : QLabel(&parent), onClick_(std::move(onClick)) {
    setTextFormat(Qt::PlainText);
  }
  void setCaption(const QString& marked, const QString& whole) {
    whole_ = whole;
    setText(marked);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QStylePainter painter(this);
    const bool fits = fontMetrics().horizontalAdvance(whole_) <= width();
    const bool underlined = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0;
    const int letter = !fits        ? Qt::TextSingleLine
                       : underlined ? Qt::TextShowMnemonic
                                    : Qt::TextHideMnemonic;
    painter.drawItemText(rect(), static_cast<int>(alignment()) | letter, palette(), isEnabled(),
                         fits ? text() : fontMetrics().elidedText(whole_, Qt::ElideRight, width()),
                         foregroundRole());
  }
  void mousePressEvent(QMouseEvent* event) override {
    pressed_ = event->button() == Qt::LeftButton;
    event->accept();
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (std::exchange(pressed_, false) && rect().contains(event->position().toPoint())) {
      onClick_();
    }
  }

 private:
  std::function<void()> onClick_;
  QString whole_;
  bool pressed_ = false;
};

class LabelFace : public Face {
 public:
  LabelFace(Stage& stage, toolkit::Label& label, QWidget& parent)
      : LabelFace(label, *new LabelWidget(parent, [&stage, &label] {
                    stage.act(label, [&label] { toolkit::hand::click(label); });
                  })) {}

  void draw(toolkit::Property property, int /*item*/) override {
    if (property == toolkit::Property::Caption) {
      drawAll();
    }
  }
  void drawAll() override {
    constexpr Qt::Alignment kAlignments[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
    widget_.setAlignment(kAlignments[static_cast<int>(control().look().alignment)] |
                         Qt::AlignVCenter);
    widget_.setCaption(marked(model_.caption(), model_.look().mnemonic), shown(model_.caption()));
  }

 private:
  LabelFace(toolkit::Label& label, LabelWidget& widget)
      : Face(label, widget), model_(label), widget_(widget) {}

  toolkit::Label& model_;
  LabelWidget& widget_;
};

}  // namespace

std::unique_ptr<Face> makeLabel(Stage& stage, toolkit::Label& label, QWidget& parent) {
  return std::make_unique<LabelFace>(stage, label, parent);
}

}  // namespace lumodevice::qt
