#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif
#include <memory>
#include <stdexcept>
#include <string>

namespace lumodevice::posix {

/// The far side of a recording VISA library that is loaded already: what was called, and what is to
/// go wrong. It starts with nothing recorded and nothing wrong.
class RecordedCalls {
 public:
  explicit RecordedCalls(const char* path) : library_(loaded(path)) {
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
#ifdef _WIN32
  static void* loaded(const char* path) {
    return ::LoadLibraryA(path);
  }
  static void* address(void* library, const char* name) {
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(library), name));
  }
  struct Close {
    void operator()(void* library) const { ::FreeLibrary(static_cast<HMODULE>(library)); }
  };
#else
  static void* loaded(const char* path) {
    return ::dlopen(path, RTLD_NOW | RTLD_NOLOAD);
  }
  static void* address(void* library, const char* name) {
    return ::dlsym(library, name);
  }
  struct Close {
    void operator()(void* library) const { ::dlclose(library); }
  };
#endif

  template <typename Function>
  Function* function(const char* name) {
    return reinterpret_cast<Function*>(address(library_.get(), name));
  }

  std::unique_ptr<void, Close> library_;
};

}  // namespace lumodevice::posix
