#pragma once

#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// The files of the tour need room where the command line named a folder for them. Throws Unusable.
void checkRoomForTour(Station& station);

/// Stops of the tour; false when what they show did not work.
[[nodiscard]] bool showScreen(Station& station);
[[nodiscard]] bool showMemoryFiles(Station& station);

}  // namespace zanctl
