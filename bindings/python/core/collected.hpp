#pragma once

#include <pybind11/pybind11.h>

namespace lumopython {

/// Null for one whose constructor threw: it holds nothing yet.
template <typename Type>
[[nodiscard]] Type* heldBy(PyObject* object) {
  const auto holder = reinterpret_cast<pybind11::detail::instance*>(object)->get_value_and_holder();
  return holder.holder_constructed() ? holder.template value_ptr<Type>() : nullptr;
}

/// Makes Python's collector see the objects that instances of a class hold, so that a cycle
/// through C++ is found. The class has `visited()`, a function that calls its argument with each
/// handle that it holds, and `clear()`, which lets them go.
template <typename Type>
[[nodiscard]] pybind11::custom_type_setup collected() {
  return pybind11::custom_type_setup([](PyHeapTypeObject* heapType) {
    PyTypeObject& type = heapType->ht_type;
    type.tp_flags |= Py_TPFLAGS_HAVE_GC;
    type.tp_traverse = [](PyObject* object, visitproc visit, void* argument) {
      // Instances hold their class, which was made at run time.
      int outcome = visit(reinterpret_cast<PyObject*>(Py_TYPE(object)), argument);
      if (const Type* const held = heldBy<Type>(object)) {
        held->visited([&](pybind11::handle handle) {
          if (outcome == 0 && handle) {
            outcome = visit(handle.ptr(), argument);
          }
        });
      }
      return outcome;
    };
    type.tp_clear = [](PyObject* object) {
      if (Type* const held = heldBy<Type>(object)) {
        held->clear();
      }
      return 0;
    };
  });
}

}  // namespace lumopython
