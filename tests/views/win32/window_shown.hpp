#pragma once

#include <string>

#include "lumodevice/win32/form_view.hpp"

namespace lumodevice::support {

/// How what the view's windows show differs from what the controls are, a line each; "" when it
/// does not.
[[nodiscard]] std::string differences(const win32::FormView& view, const toolkit::Control& control);
[[nodiscard]] std::string differences(const win32::FormView& view, const toolkit::Surface& surface);

}  // namespace lumodevice::support
