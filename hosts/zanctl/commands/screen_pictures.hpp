#pragma once

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// The command `capture`: saves the instrument's screen as a picture.
[[nodiscard]] ExitStatus runCapture(Station& station, const Options& options);

/// The command `convert`: makes a picture of a display dump, without an instrument.
[[nodiscard]] ExitStatus runConvert(Station& station, const Options& options);

}  // namespace zanctl
