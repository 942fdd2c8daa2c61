#pragma once

#include <string>
#include <vector>

#include "lumodevice/toolkit/surface.hpp"

namespace zanctl {

/// The names of the controls on a surface, a control array once, without an index.
[[nodiscard]] std::vector<std::string> namesOfControls(const lumodevice::toolkit::Surface& surface);

}  // namespace zanctl
