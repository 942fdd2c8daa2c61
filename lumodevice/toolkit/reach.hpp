#pragma once

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::toolkit {

/// Whether an operator gets to a control: it is visible with all its containers, and neither it nor
/// one of them lies wholly under a frame in front of it. The Tab key and the mnemonics stop at such
/// controls alone, where they are usable, too.
///
///     for (const auto& control : load.surface().controls()) {
///       if (control->usable() && toolkit::reachable(load.surface(), *control)) {
///         std::cout << control->fullName() << '\n';
///       }
///     }
[[nodiscard]] LUMODEVICE_API bool reachable(const Surface& surface, const Control& control);

}  // namespace lumodevice::toolkit
