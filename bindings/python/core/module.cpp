#include <exception>
#include <pybind11/pybind11.h>
#include <stdexcept>
#include <string>

#include "bindings/python/core/bench.hpp"
#include "bindings/python/core/formatted_io.hpp"
#include "bindings/python/core/hosts.hpp"
#include "bindings/python/core/interruptible_loop.hpp"
#include "bindings/python/core/members.hpp"
#include "bindings/python/core/surface.hpp"
#include "bindings/python/core/tables.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "lumodevice/text/fault.hpp"
#include "lumodevice/toolkit/property.hpp"

namespace py = pybind11;

namespace {

/// Never let go: exceptions may be raised until the interpreter ends.
PyObject* newException(py::module_& module, const char* name, const char* doc, PyObject* base) {
  const std::string full = std::string("lumodevice.") + name;
  PyObject* const made = PyErr_NewExceptionWithDoc(full.c_str(), doc, base, nullptr);
  if (made == nullptr) {
    throw py::error_already_set();
  }
  module.attr(name) = py::handle(made);
  return made;
}

/// The exceptions of the component as those of Python. What the module has of its own is made once
/// and stands in these.
PyObject* fault = nullptr;
PyObject* wrongThread = nullptr;
PyObject* brokenOff = nullptr;

void translate(std::exception_ptr thrown) {
  try {
    if (thrown) {
      std::rethrow_exception(thrown);
    }
  } catch (const lumodevice::toolkit::PropertyFault& refused) {
    PyErr_SetString(refused.number() == lumodevice::toolkit::kNoSuchProperty ? PyExc_AttributeError
                                                                             : PyExc_ValueError,
                    refused.what());
  } catch (const lumodevice::Fault& failed) {
    PyErr_SetObject(fault, py::make_tuple(failed.number(), failed.what()).ptr());
  } catch (const lumopython::WrongThread& wrong) {
    PyErr_SetString(wrongThread, wrong.what());
  } catch (const std::out_of_range& beyond) {
    PyErr_SetString(PyExc_ValueError, beyond.what());
  } catch (const zanctl::Unusable& unusable) {
    PyErr_SetString(PyExc_OSError, unusable.what());
  } catch (const lumopython::BrokenOff&) {
    PyErr_SetString(brokenOff, "the wait was broken off");
  }
}

}  // namespace

PYBIND11_MODULE(_lumodevice, module) {
  py::options options;
  // The texts of the table say it in the words of Python, and in one line.
  options.disable_function_signatures();
  module.doc() =
      "The automation layer of lumodevice: the control as it is, its panel and its host.";
  fault =
      newException(module, "Fault",
                   "What a link, a drive or a value refused: (number, text). Members of ZANCtrl "
                   "never raise it; FormattedIO488 does.",
                   PyExc_Exception);
  wrongThread = newException(module, "WrongThread",
                             "A control was used on another thread than that of its host.",
                             PyExc_RuntimeError);
  brokenOff = newException(module, "BrokenOff", "A wait was broken off by another thread.",
                           PyExc_Exception);
  py::register_exception_translator(&translate);
  lumopython::bindTables(module);
  lumopython::bindHosts(module);
  lumopython::bindFormattedIO(module);
  lumopython::bindSurface(module);
  lumopython::bindZanCtrl(module);
}
