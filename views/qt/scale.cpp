#include "views/qt/scale.hpp"

#include <QtGui/QFontMetricsF>
#include <algorithm>

#include "lumodevice/toolkit/drawing.hpp"

namespace lumodevice::qt {

Scale::Scale(const QWidget& widget) {
  const QFontMetricsF font(widget.font(), &widget);
  const double perTwip = widget.logicalDpiX() / toolkit::kTwipsPerInch;
  const double wide = font.horizontalAdvance(QLatin1String(toolkit::kSampleText));
  enlarged_ = std::max({1.0, font.height() / (toolkit::kLineTwips * perTwip),
                        wide / (toolkit::kSampleTwips * perTwip)});
  pixelsPerTwip_ = perTwip * enlarged_;
}

}  // namespace lumodevice::qt
