#pragma once

#include <functional>

#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// Waits until the instrument that was lost is back, at growing pauses of up to a minute, and
/// connects to it and to no other one, without operating it. A line on `errors` says that the link
/// is lost and why, and one that it is back. False when `givesUp` has said so meanwhile.
[[nodiscard]] bool awaitReturn(Station& station, const std::function<bool()>& givesUp);

}  // namespace zanctl
