#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>
#include <string_view>

#include "lumodevice/export.hpp"

namespace lumodevice::qt {

/// The information boxes of a component as Qt's own. Timers tick while one stands there.
///
///     lumodevice::qt::InformationBoxes boxes;
///     lumodevice::ZANCtrl device(lumodevice::systemHost({.informationBox = boxes}));
class LUMODEVICE_API InformationBoxes {
 public:
  /// Over the active window of the program.
  InformationBoxes() = default;
  /// Over the window of `widget`, while there is that one.
  explicit InformationBoxes(QWidget& widget) : widget_(&widget) {}

  /// Shows a box and returns when the operator has put it away.
  void operator()(std::string_view text) const;

 private:
  QPointer<QWidget> widget_;
};

}  // namespace lumodevice::qt
