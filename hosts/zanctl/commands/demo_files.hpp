#pragma once

#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// Stops of the tour; false when what they show did not work.
[[nodiscard]] bool showScreen(Station& station, const Options& options);
[[nodiscard]] bool showMemoryFiles(Station& station, const Options& options);

}  // namespace zanctl
