#pragma once

#include <memory>
#include <pybind11/pybind11.h>
#include <utility>

#include "bindings/python/core/bench.hpp"
#include "lumodevice/io/visa_com.hpp"

namespace lumopython {

/// The formatted-I/O object of a VISA COM link as Python has it.
class PyFormattedIO {
 public:
  using Device = std::shared_ptr<lumodevice::io::FormattedIO488>;

  PyFormattedIO(Device device, std::shared_ptr<Bench> bench)
      : bench_(std::move(bench)), device_(std::move(device)) {}

  [[nodiscard]] const Device& device() const { return device_; }

  /// As Component::use.
  template <typename Act>
  auto use(Act act) const {
    const Bench::Use entered(*bench_);
    const pybind11::gil_scoped_release free;
    return act(*device_);
  }

 private:
  /// Goes last: the session is one of its links.
  std::shared_ptr<Bench> bench_;
  Device device_;
};

void bindFormattedIO(pybind11::module_& module);

}  // namespace lumopython
