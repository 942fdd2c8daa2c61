#include <QtGui/QImage>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <utility>

#include "lumodevice/toolkit/drawing.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "views/qt/faces/face.hpp"

namespace lumodevice::qt {

namespace {

using toolkit::MousePress;
using toolkit::Property;

class PictureWidget : public QWidget {
 public:
  PictureWidget(Stage& stage, toolkit::Pictured& control, QWidget& parent)
      : QWidget(&parent), stage_(stage), control_(control) {
    setFocusPolicy(Qt::StrongFocus);
  }
  void setImage(QImage image) {
    image_ = std::move(image);
    update();
  }
  void setStretch(bool stretch) {
    stretch_ = stretch;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    if (image_.isNull()) {
      painter.fillRect(rect(), palette().brush(QPalette::Base));
    } else {
      const QRect place = stretch_ ? rect() : QRect(QPoint(0, 0), naturalSize());
      const double ratio = place.width() * devicePixelRatioF() / image_.width();
      painter.setRenderHint(QPainter::SmoothPixmapTransform, ratio != std::floor(ratio));
      painter.drawImage(place, image_);
    }
    if (hasFocus()) {
      painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
      painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
  }
  void mousePressEvent(QMouseEvent* event) override {
    const MousePress press = pressOf(*event);
    if (press.button != 0) {
      stage_.act(control_,
                 [&control = control_, press] { toolkit::hand::mouseDown(control, press); });
    }
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
      click();
    }
  }
  void keyPressEvent(QKeyEvent* event) override {
    const bool chosen = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                        event->key() == Qt::Key_Enter;
    if (chosen) {
      click();
    } else {
      QWidget::keyPressEvent(event);
    }
  }

 private:
  void click() {
    stage_.act(control_, [&control = control_] { toolkit::hand::click(control); });
  }

  /// As large as on the screen that it comes from, at the view's scale.
  [[nodiscard]] QSize naturalSize() const {
    return {stage_.scale().pixels(image_.width() * toolkit::kTwipsPerPicturePoint),
            stage_.scale().pixels(image_.height() * toolkit::kTwipsPerPicturePoint)};
  }

  /// With button 0 for one that presses do not know.
  [[nodiscard]] MousePress pressOf(const QMouseEvent& event) const {
    MousePress press;
    press.button = event.button() == Qt::LeftButton     ? std::int16_t{MousePress::kLeft}
                   : event.button() == Qt::RightButton  ? std::int16_t{MousePress::kRight}
                   : event.button() == Qt::MiddleButton ? std::int16_t{MousePress::kMiddle}
                                                        : std::int16_t{0};
    const auto held = [&event](Qt::KeyboardModifier key, MousePress::Key value) {
      return event.modifiers().testFlag(key) ? static_cast<int>(value) : 0;
    };
    press.shift = static_cast<std::int16_t>(held(Qt::ShiftModifier, MousePress::kShift) +
                                            held(Qt::ControlModifier, MousePress::kControl) +
                                            held(Qt::AltModifier, MousePress::kAlt));
    press.x = stage_.scale().twips(event.position().x());
    press.y = stage_.scale().twips(event.position().y());
    return press;
  }

  Stage& stage_;
  toolkit::Pictured& control_;
  QImage image_;
  bool stretch_ = false;
};

QImage imageOf(const toolkit::Pictured& control) {
  if (!control.picture() || control.picture()->empty()) {
    return {};
  }
  const toolkit::Picture& picture = *control.picture();
  QImage image(picture.width(), picture.height(), QImage::Format_RGB32);
  for (int y = 0; y < picture.height(); ++y) {
    auto* point = reinterpret_cast<QRgb*>(image.scanLine(y));
    const auto row = picture.row(y);
    for (std::size_t x = 0; x + 2 < row.size(); x += 3) {
      *point++ = qRgb(row[x + 2], row[x + 1], row[x]);
    }
  }
  return image;
}

class PictureFace : public Face {
 public:
  PictureFace(Stage& stage, toolkit::Pictured& control, QWidget& parent)
      : PictureFace(control, *new PictureWidget(stage, control, parent)) {}

  void draw(Property property, int /*item*/) override {
    if (property == Property::Picture) {
      widget_.setImage(imageOf(model_));
    } else if (property == Property::Stretch) {
      drawStretch();
    }
  }
  void drawAll() override {
    drawStretch();
    widget_.setImage(imageOf(model_));
  }

 private:
  PictureFace(const toolkit::Pictured& control, PictureWidget& widget)
      : Face(control, widget), model_(control), widget_(widget) {}

  void drawStretch() {
    const auto* image = dynamic_cast<const toolkit::Image*>(&model_);
    widget_.setStretch(image != nullptr && image->stretch());
  }

  const toolkit::Pictured& model_;
  PictureWidget& widget_;
};

}  // namespace

std::unique_ptr<Face> makePicture(Stage& stage, toolkit::Pictured& picture, QWidget& parent) {
  return std::make_unique<PictureFace>(stage, picture, parent);
}

}  // namespace lumodevice::qt
