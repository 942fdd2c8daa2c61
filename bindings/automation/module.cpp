#include "bindings/automation/module.hpp"

#include <atomic>

/// Where the file lies in memory; the linker knows.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace lumodevice::automation::module {

namespace {

/// Apartments of several threads may hold the file.
std::atomic<long> holders = 0;

}  // namespace

void hold() {
  ++holders;
}

void release() {
  --holders;
}

bool isHeld() {
  return holders != 0;
}

HINSTANCE instance() {
  return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

std::wstring path() {
  std::wstring name(MAX_PATH, L'\0');
  DWORD length = 0;
  while ((length = GetModuleFileNameW(instance(), name.data(), static_cast<DWORD>(name.size()))) ==
         name.size()) {
    name.resize(2 * name.size());
  }
  name.resize(length);
  return name;
}

}  // namespace lumodevice::automation::module
