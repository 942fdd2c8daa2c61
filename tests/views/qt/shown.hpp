#pragma once

#include <string>

#include "lumodevice/qt/form_view.hpp"
#include "lumodevice/toolkit/control.hpp"

namespace lumodevice::support {

/// What a view shows otherwise than its control is, a line for each difference; "" for none.
[[nodiscard]] std::string differences(const qt::FormView& view, const toolkit::Control& control);

/// The same of all controls of the form.
[[nodiscard]] std::string differences(const qt::FormView& view, const toolkit::Surface& surface);

}  // namespace lumodevice::support
