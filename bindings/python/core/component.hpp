#pragma once

#include <array>
#include <memory>
#include <pybind11/pybind11.h>
#include <stdexcept>
#include <utility>

#include "bindings/python/core/bench.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace lumopython {

/// The host as Python has it. It holds the callables of the information box and the like.
class PyHost {
 public:
  template <typename NativeOptions>
  PyHost(const Bench::Options& options, NativeOptions native)
      : callables_{options.informationBox, options.mistaken},
        bench_(std::make_shared<Bench>(options, std::move(native))) {}

  [[nodiscard]] const std::shared_ptr<Bench>& bench() const { return bench_; }

  void visited(const auto& visit) const {
    for (const HeldCallable& callable : callables_) {
      if (callable) {
        visit(*callable);
      }
    }
  }
  void clear() const {
    for (const HeldCallable& callable : callables_) {
      if (callable) {
        *callable = pybind11::none();
      }
    }
  }

 private:
  std::array<HeldCallable, 2> callables_;
  std::shared_ptr<Bench> bench_;
};

/// The control as Python has it.
class Component {
 public:
  explicit Component(pybind11::object host) : host_(std::move(host)), bench_(benchOf(host_)) {
    const Bench::Use entered(*bench_);
    zan_ = std::make_unique<lumodevice::ZANCtrl>(bench_->host());
  }
  ~Component() { close(); }
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  /// Runs an act on the control with the interpreter's lock free. Throws WrongThread, and
  /// std::runtime_error once the control has been closed.
  template <typename Act>
  auto use(Act act) {
    const std::shared_ptr<Bench> bench = bench_;
    const Bench::Use entered(*bench);
    lumodevice::ZANCtrl& zan = control();
    const pybind11::gil_scoped_release free;
    return act(zan);
  }

  /// The same for what neither waits nor raises an event: the lock stays.
  template <typename Look>
  auto look(Look look) {
    const Bench::Use entered(*bench_);
    return look(control());
  }

  /// Ends the control; no more than that when it has ended.
  void close() {
    if (zan_ != nullptr) {
      bench_->takeBack(std::move(zan_));
    }
  }
  [[nodiscard]] bool closed() const { return zan_ == nullptr; }

  [[nodiscard]] const pybind11::object& host() const { return host_; }
  [[nodiscard]] const std::shared_ptr<Bench>& bench() const { return bench_; }

  void visited(const auto& visit) const { visit(host_); }
  void clear() {
    close();
    host_ = pybind11::none();
  }

 private:
  static std::shared_ptr<Bench> benchOf(const pybind11::object& host) {
    if (!pybind11::isinstance<PyHost>(host)) {
      throw pybind11::type_error("a ZANCtrl is made on a Host: system_host() or simulated_host()");
    }
    return host.cast<const PyHost&>().bench();
  }

  [[nodiscard]] lumodevice::ZANCtrl& control() const {
    if (zan_ == nullptr) {
      throw std::runtime_error("this control has been closed");
    }
    return *zan_;
  }

  pybind11::object host_;
  std::shared_ptr<Bench> bench_;
  std::unique_ptr<lumodevice::ZANCtrl> zan_;
};

}  // namespace lumopython
