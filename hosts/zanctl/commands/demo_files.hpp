#pragma once

#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// Stops of the tour; false when what they show did not work.
[[nodiscard]] bool showScreen(Station& station);
[[nodiscard]] bool showMemoryFiles(Station& station);

}  // namespace zanctl
