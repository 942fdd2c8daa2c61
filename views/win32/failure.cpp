#include "lumodevice/win32/failure.hpp"

#include <cstdio>
#include <string>

#include "views/win32/windows.hpp"

namespace lumodevice::win32 {

namespace {

void tell(const char* what) noexcept {
  OutputDebugStringA("lumodevice: a handler failed: ");
  OutputDebugStringA(what);
  OutputDebugStringA("\n");
  std::fprintf(stderr, "lumodevice: a handler failed: %s\n", what);
}

}  // namespace

void reportFailure(const std::exception_ptr& failure) noexcept {
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& exception) {
    tell(exception.what());
  } catch (...) {
    tell("of no known kind");
  }
}

}  // namespace lumodevice::win32
