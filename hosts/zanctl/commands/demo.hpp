#pragma once

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// A guided tour: connects to the simulated instrument, shows what it is, sends it a few commands
/// and tells what happens.
[[nodiscard]] ExitStatus runDemo(Station& station, const Options& options);

}  // namespace zanctl
