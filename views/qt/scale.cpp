#include "views/qt/scale.hpp"

#include <QtGui/QFontMetricsF>
#include <algorithm>

namespace lumodevice::qt {

namespace {

constexpr double kTwipsPerInch = 1440;
/// How high and wide the font is that forms are drawn for, in twips: 9 points, and wide letters.
constexpr double kLineTwips = 210;
constexpr double kSampleTwips = 4080;

}  // namespace

Scale::Scale(const QWidget& widget) {
  const QFontMetricsF font(widget.font(), &widget);
  const double perTwip = widget.logicalDpiX() / kTwipsPerInch;
  const double wide =
      font.horizontalAdvance(QStringLiteral("The quick brown fox jumps over 0123456789"));
  enlarged_ =
      std::max({1.0, font.height() / (kLineTwips * perTwip), wide / (kSampleTwips * perTwip)});
  pixelsPerTwip_ = perTwip * enlarged_;
}

}  // namespace lumodevice::qt
