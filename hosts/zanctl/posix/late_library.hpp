#pragma once

#include <dlfcn.h>

namespace zanctl {

/// A library of the system that few commands need: those load it when they do, and the others start
/// without waiting for it. It stays until the program ends.
class LateLibrary {
 public:
  explicit LateLibrary(const char* name) : handle_(::dlopen(name, RTLD_NOW | RTLD_LOCAL)) {}

  /// Sets `function` to the library's function of that name; false when there is none.
  template <typename Function>
  [[nodiscard]] bool find(const char* name, Function*& function) const {
    function = handle_ == nullptr ? nullptr : reinterpret_cast<Function*>(::dlsym(handle_, name));
    return function != nullptr;
  }

 private:
  void* handle_;
};

}  // namespace zanctl
