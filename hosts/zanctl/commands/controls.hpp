#pragma once

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// Prints name, kind, caption or text, enabled, visible and tag of every control, or of the one
/// that is named (of a control array all elements). Throws Unusable when there is none of
/// that name.
[[nodiscard]] ExitStatus runControls(Station& station, const Options& options);

}  // namespace zanctl
