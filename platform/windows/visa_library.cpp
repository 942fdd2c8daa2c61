#include "platform/visa_library.hpp"

#include <array>
#include <string_view>
#include <utility>
#include <windows.h>

#include "platform/builtin/builtin_visa.hpp"
#include "platform/visa_functions.hpp"
#include "platform/windows/text.hpp"

namespace lumodevice::platform {

namespace {

/// By ordinal, which is what a VISA library of Windows is called by; one that exports names alone
/// will do.
std::string bindAll(HMODULE library, VisaFunctions& functions) {
  std::string missing;
  for (const VisaFunction& function : kVisaFunctions) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): how an ordinal is handed over
    FARPROC address = ::GetProcAddress(library, MAKEINTRESOURCEA(function.ordinal));
    if (address == nullptr) address = ::GetProcAddress(library, function.name);
    function.keep(functions, reinterpret_cast<void*>(address));
    if (address == nullptr) missing += (missing.empty() ? "" : ", ") + std::string(function.name);
  }
  return missing;
}

VisaLibraryFailure absent(const std::string& name) {
  return {.name = name, .reason = "no such file", .absent = true};
}

/// A file that the library itself needs and that is missing has the same error number: whether the
/// library is there is looked up.
VisaLibraryFailure loaderFailure(const std::string& name, DWORD error) {
  if (error == ERROR_MOD_NOT_FOUND) {
    std::array<wchar_t, MAX_PATH> place{};
    const bool there = ::SearchPathW(nullptr, windows::wide(name).c_str(), nullptr,
                                     static_cast<DWORD>(place.size()), place.data(), nullptr) != 0;
    if (!there) return absent(name);
    return {name, "a library that it needs is missing"};
  }
  if (error == ERROR_BAD_EXE_FORMAT) {
    return {name, sizeof(void*) == 8 ? "not a DLL of 64 bit" : "not a DLL of 32 bit"};
  }
  return {name, windows::errorText(error)};
}

/// A plain name is looked for beside the program and in the folder of the system alone, so that no
/// DLL that lies in the current folder is taken for it.
HMODULE load(const std::string& name) {
  const std::wstring file = windows::wide(name);
  const bool path = name.find_first_of("\\/") != std::string::npos;
  const DWORD mode = ::SetErrorMode(SEM_FAILCRITICALERRORS);
  HMODULE library =
      ::LoadLibraryExW(file.c_str(), nullptr,
                       path ? LOAD_WITH_ALTERED_SEARCH_PATH
                            : LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
  const DWORD error = ::GetLastError();
  (void)::SetErrorMode(mode);
  ::SetLastError(error);
  return library;
}

void tryLibrary(const std::string& name, VisaLibraryResult& result) {
  const HMODULE loaded = load(name);
  if (loaded == nullptr) {
    result.failures.push_back(loaderFailure(name, ::GetLastError()));
    return;
  }
  std::shared_ptr<void> library(loaded,
                                [](void* module) { ::FreeLibrary(static_cast<HMODULE>(module)); });
  VisaFunctions functions;
  const std::string missing = bindAll(loaded, functions);
  if (!missing.empty()) {
    result.failures.push_back({name, "lacks " + missing});
    return;
  }
  result.library = visaOver(std::move(library), functions);
  result.name = name;
}

}  // namespace

VisaLibraryResult loadVisaLibrary(const std::string& path) {
  VisaLibraryResult result;
  if (path.empty()) {
    result.failures.push_back(absent(path));
  } else {
    tryLibrary(path, result);
  }
  return result;
}

/// Of the two that a 64-bit installation puts in place the first is meant for programs of 64 bit.
VisaLibraryResult loadVisaLibrary() {
#ifdef _WIN64
  constexpr std::array names{"visa64.dll", "visa32.dll"};
#else
  constexpr std::array names{"visa32.dll"};
#endif
  VisaLibraryResult result;
  for (const char* name : names) {
    tryLibrary(name, result);
    if (result.library) break;
  }
  return result;
}

std::unique_ptr<io::Visa> builtinVisa() {
  return std::make_unique<BuiltinVisa>();
}

}  // namespace lumodevice::platform
