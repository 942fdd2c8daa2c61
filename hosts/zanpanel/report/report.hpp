#pragma once

#include <QtCore/QString>

#include "hosts/zanpanel/program/instrument.hpp"

namespace zanpanel {

/// Writes a discharge on one page: what was discharged, with which settings, the curves, the
/// totals, and why it ended. The end of the name says what it becomes, PDF or a picture (PNG).
/// False when the file cannot be written.
[[nodiscard]] bool writeReport(Instrument& instrument, const QString& file);

}  // namespace zanpanel
