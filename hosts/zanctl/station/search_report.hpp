#pragma once

#include "hosts/zanctl/output/progress.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace zanctl {

/// While the subscription lives, tells each attempt of the serial search as it begins: "trying COM3
/// at 19200 baud". The progress must live as long.
[[nodiscard]] lumodevice::toolkit::Subscription reportSearch(lumodevice::toolkit::Surface& surface,
                                                             Progress& progress);

}  // namespace zanctl
