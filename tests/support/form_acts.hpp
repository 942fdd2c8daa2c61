#pragma once

#include <random>

#include "lumodevice/toolkit/controls.hpp"

/// What code may do to a form, for the tests of views.
namespace lumodevice::support {

/// One random act of code on the control.
void act(toolkit::Control& control, std::mt19937& random);

/// Brings the control and all that it sits in before all others, and lets it be used.
void expose(toolkit::Control& control);

}  // namespace lumodevice::support
