#pragma once

#include <pybind11/pybind11.h>

namespace lumopython {

/// The tables of the component as tuples of tuples: MEMBERS, MODES, SETTINGS, SWITCHES, READINGS
/// and FAILURES.
void bindTables(pybind11::module_& module);

}  // namespace lumopython
