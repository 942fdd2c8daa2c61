#pragma once

#include <pybind11/pybind11.h>
#include <string>
#include <string_view>

/// Texts of the component as Python strings and back. Captions are UTF-8; what came over a wire may
/// be any bytes, and those that are no UTF-8 survive the way there and back (surrogateescape).
namespace lumopython {

[[nodiscard]] inline pybind11::str toPython(std::string_view text) {
  PyObject* const made =
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
  if (made == nullptr) {
    throw pybind11::error_already_set();
  }
  return pybind11::reinterpret_steal<pybind11::str>(made);
}

[[nodiscard]] inline std::string fromPython(const pybind11::str& text) {
  PyObject* const made = PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape");
  if (made == nullptr) {
    throw pybind11::error_already_set();
  }
  const auto bytes = pybind11::reinterpret_steal<pybind11::bytes>(made);
  return std::string(bytes);
}

}  // namespace lumopython
