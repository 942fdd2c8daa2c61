#pragma once

#include <memory>
#include <pybind11/pybind11.h>
#include <utility>

namespace lumopython {

/// A Python callable that C++ holds, perhaps where the interpreter's lock is free: it is taken for
/// each call and for the end.
using HeldCallable = std::shared_ptr<pybind11::object>;

[[nodiscard]] inline HeldCallable hold(pybind11::object callable) {
  return {new pybind11::object(std::move(callable)), [](pybind11::object* held) {
            const pybind11::gil_scoped_acquire locked;
            delete held;
          }};
}

/// What the callable raises goes on as an exception. The arguments are made under the lock, by
/// `arguments`, which returns a tuple.
template <typename Arguments>
void call(const HeldCallable& callable, Arguments arguments) {
  const pybind11::gil_scoped_acquire locked;
  const pybind11::object held = *callable;
  if (held && !held.is_none()) {
    held(*arguments());
  }
}

}  // namespace lumopython
