#pragma once

/// The kinds of control. "From code" means a setter of these headers; an operator's acts go through
/// Hand.
///
///     std::cout << load.surface().get<toolkit::TextBox>("txtVoltage", 0).text() << " V\n";
#include "lumodevice/toolkit/buttons.hpp"
#include "lumodevice/toolkit/fields.hpp"
#include "lumodevice/toolkit/frames.hpp"
#include "lumodevice/toolkit/lists.hpp"
#include "lumodevice/toolkit/pictures.hpp"
