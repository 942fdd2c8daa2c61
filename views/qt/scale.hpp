#pragma once

#include <QtCore/QRect>
#include <QtWidgets/QWidget>

#include "lumodevice/toolkit/property.hpp"

namespace lumodevice::qt {

/// Twips of a form to the pixels of a view. What adjoins in twips adjoins in pixels.
class Scale {
 public:
  /// That of the widget's screen; larger where its font is larger than the one that forms are
  /// drawn for, so that texts fit into their places.
  explicit Scale(const QWidget& widget);

  [[nodiscard]] int pixels(double twips) const { return qRound(twips * pixelsPerTwip_); }
  [[nodiscard]] QRect pixels(const toolkit::Place& place) const {
    const QPoint begin(pixels(place.left), pixels(place.top));
    const QPoint end(pixels(place.left + place.width), pixels(place.top + place.height));
    return {begin, QSize(end.x() - begin.x(), end.y() - begin.y())};
  }
  [[nodiscard]] float twips(double pixels) const {
    return static_cast<float>(pixels / pixelsPerTwip_);
  }
  /// Of letters that are `points` high in the form's own font.
  [[nodiscard]] double points(int points) const { return points * enlarged_; }

  friend bool operator==(const Scale&, const Scale&) = default;

 private:
  double enlarged_ = 1;
  double pixelsPerTwip_ = 1;
};

}  // namespace lumodevice::qt
