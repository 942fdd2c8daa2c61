#pragma once

#include <memory>
#include <pybind11/pybind11.h>

#include "bindings/python/core/component.hpp"

namespace lumopython {

/// The classes Surface, Control and Subscription.
void bindSurface(pybind11::module_& module);

/// surface() and the controls by name, of ZANCtrl.
void bindSurfaceOf(pybind11::class_<Component, std::shared_ptr<Component>>& type);

}  // namespace lumopython
