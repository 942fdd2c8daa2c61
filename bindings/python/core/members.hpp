#pragma once

#include <pybind11/pybind11.h>

namespace lumopython {

/// The class ZANCtrl with its members, made from their table, and what hosts in C++ have beside
/// them.
void bindZanCtrl(pybind11::module_& module);

}  // namespace lumopython
