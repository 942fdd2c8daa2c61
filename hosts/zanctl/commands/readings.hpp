#pragma once

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// The command `readings`: selects each channel by its number alone, which changes no setting, and
/// asks for its readings; in the end the channel that the panel shows is selected again.
[[nodiscard]] ExitStatus runReadings(Station& station, const Options& options);

}  // namespace zanctl
