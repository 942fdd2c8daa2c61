#pragma once

#include <dlfcn.h>
#include <memory>
#include <stdexcept>
#include <string>

namespace lumodevice::posix {

/// The far side of a recording VISA library that is loaded already: what was called, and what is to
/// go wrong. It starts with nothing recorded and nothing wrong.
class RecordedCalls {
 public:
  explicit RecordedCalls(const char* path) : library_(::dlopen(path, RTLD_NOW | RTLD_NOLOAD)) {
    if (library_ == nullptr) throw std::logic_error(std::string(path) + " is not loaded");
    fail("");
    answerOnly("");
    take();
  }

  /// The calls since the last time, one a line with every argument.
  std::string take() {
    std::string calls = function<const char*()>("recordedCalls")();
    function<void()>("forgetCalls")();
    return calls;
  }

  /// All calls of the function fail but the first `before` ones; "" is none.
  void fail(const char* name, int before = 0) {
    function<void(const char*, int)>("failCalls")(name, before);
  }

  /// Reads after any other message time out; "" is none.
  void answerOnly(const char* message) { function<void(const char*)>("answerOnly")(message); }

 private:
  struct Close {
    void operator()(void* library) const { ::dlclose(library); }
  };

  template <typename Function>
  Function* function(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(library_.get(), name));
  }

  std::unique_ptr<void, Close> library_;
};

}  // namespace lumodevice::posix
