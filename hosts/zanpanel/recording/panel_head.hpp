#pragma once

#include "hosts/zanpanel/recording/csv_recording.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace zanpanel {

/// What the panel shows of its channel, for the head of a recording or a report: the mode and its
/// settings, the switches and the protections with their levels.
[[nodiscard]] Head settingsOf(const lumodevice::toolkit::Surface& surface);

}  // namespace zanpanel
