#include <QtGui/QPainter>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QStyle>

#include "lumodevice/toolkit/drawing.hpp"
#include "views/qt/dress.hpp"
#include "views/qt/faces/face.hpp"
#include "views/qt/texts.hpp"

namespace lumodevice::qt {

namespace {

/// A frame as a card with its caption within, the same in every style; one that is as wide as what
/// it sits in is a page.
class FrameWidget : public QGroupBox {
 public:
  FrameWidget(Stage& stage, QWidget& parent) : QGroupBox(&parent), stage_(stage) {
    // It may lie over others, which then must not show through.
    setAutoFillBackground(true);
  }
  void setPage(bool page) {
    page_ = page;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    constexpr double kRounding = 75;
    QPainter painter(this);
    if (!page_) {
      painter.setRenderHint(QPainter::Antialiasing);
      painter.setPen(edgeColour(palette()));
      painter.setBrush(cardColour(palette()));
      const double rounding = stage_.scale().pixels(kRounding);
      painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), rounding, rounding);
    }
    QFont letters = font();
    letters.setBold(true);
    letters.setPointSizeF(letters.pointSizeF() * (page_ ? toolkit::kPageCaption : 1));
    painter.setFont(letters);
    const int margin = stage_.scale().pixels(toolkit::kFrameMargin);
    const int top =
        stage_.scale().pixels(page_ ? toolkit::kFrameMargin : toolkit::kFrameCaptionTop);
    const QRect place(margin, top, width() - 2 * margin, painter.fontMetrics().height());
    style()->drawItemText(&painter, place, Qt::AlignLeft | Qt::AlignTop | Qt::TextShowMnemonic,
                          palette(), isEnabled(), title(), QPalette::WindowText);
  }

 private:
  Stage& stage_;
  bool page_ = false;
};

class FrameFace : public Face {
 public:
  FrameFace(Stage& stage, const toolkit::Frame& frame, QWidget& parent)
      : FrameFace(frame, *new FrameWidget(stage, parent)) {}

  void draw(toolkit::Property property, int /*item*/) override {
    if (property == toolkit::Property::Caption) {
      drawAll();
    }
  }
  void drawAll() override {
    box_.setPage(toolkit::isPage(frame_));
    box_.setTitle(marked(frame_.caption(), frame_.look().mnemonic));
  }

 private:
  FrameFace(const toolkit::Frame& frame, FrameWidget& box)
      : Face(frame, box), frame_(frame), box_(box) {}

  const toolkit::Frame& frame_;
  FrameWidget& box_;
};

}  // namespace

std::unique_ptr<Face> makeFrame(Stage& stage, toolkit::Frame& frame, QWidget& parent) {
  return std::make_unique<FrameFace>(stage, frame, parent);
}

}  // namespace lumodevice::qt
