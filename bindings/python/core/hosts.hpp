#pragma once

#include <pybind11/pybind11.h>

namespace lumopython {

/// The class Host, and the functions that make one.
void bindHosts(pybind11::module_& module);

}  // namespace lumopython
