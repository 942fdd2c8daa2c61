#pragma once

#include "lumodevice/zan_ctrl.hpp"

namespace zanpanel {

/// Switches the load of the selected channel off, by the panel's own switch where that shows it on,
/// and asks the instrument whether it is; tells it again where it is not. True when the instrument
/// has said that it is off. Blocks for these exchanges.
[[nodiscard]] bool switchLoadOff(lumodevice::ZANCtrl& load);

}  // namespace zanpanel
