#pragma once

#include <QtCore/QString>

class QWidget;

namespace zanpanel {

enum class Leaving { LeaveOn, SwitchOff, Stay };

/// Asks what is to become of a load that is on when its window closes.
[[nodiscard]] Leaving askAboutLoad(QWidget* over, const QString& channel, bool discharging);

}  // namespace zanpanel
