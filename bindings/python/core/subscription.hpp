#pragma once

#include <pybind11/pybind11.h>
#include <utility>

#include "bindings/python/core/held_callable.hpp"
#include "lumodevice/toolkit/observers.hpp"

namespace lumopython {

/// A subscription as Python has it. The callable is its own, so that a cycle through it is found.
class PySubscription {
 public:
  PySubscription(HeldCallable callable, lumodevice::toolkit::Subscription native)
      : callable_(std::move(callable)), native_(std::move(native)) {}

  void end() {
    {
      const pybind11::gil_scoped_release free;
      native_.end();
    }
    clear();
  }

  void visited(const auto& visit) const { visit(*callable_); }
  void clear() { *callable_ = pybind11::none(); }

 private:
  HeldCallable callable_;
  lumodevice::toolkit::Subscription native_;
};

}  // namespace lumopython
