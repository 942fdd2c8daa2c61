#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/toolkit/surface.hpp"

namespace zanctl {

/// What the last word of a line of a host script, as far as it is typed, may become: an
/// instruction, a member, a control or another word that the instruction takes there.
[[nodiscard]] std::vector<std::string> completionsOf(std::string_view line,
                                                     const lumodevice::toolkit::Surface& surface);

}  // namespace zanctl
