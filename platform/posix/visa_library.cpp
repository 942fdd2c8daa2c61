#include "platform/visa_library.hpp"

#include <array>
#include <dlfcn.h>
#include <fstream>
#include <string_view>
#include <utility>

#include "platform/visa_functions.hpp"

namespace lumodevice::platform {

namespace {

std::string bindAll(void* library, VisaFunctions& functions) {
  std::string missing;
  for (const VisaFunction& function : kVisaFunctions) {
    void* const address = ::dlsym(library, function.name);
    function.keep(functions, address);
    if (address == nullptr) missing += (missing.empty() ? "" : ", ") + std::string(function.name);
  }
  return missing;
}

bool isElf(const std::string& path) {
  std::array<char, 4> magic{};
  std::ifstream(path, std::ios::binary).read(magic.data(), magic.size());
  return std::string_view(magic.data(), magic.size()) ==
         "\x7f"
         "ELF";
}

VisaLibraryFailure absent(const std::string& name) {
  return {.name = name, .reason = "no such file", .absent = true};
}

/// What the loader said of a name: its words, without the name that they begin with and the version
/// that some end with. A file that the library itself needs and that is missing goes by its own
/// name there.
VisaLibraryFailure loaderFailure(const std::string& name) {
  const char* words = ::dlerror();
  std::string reason = words == nullptr ? "cannot be loaded" : words;
  if (reason.find("No such file or directory") != std::string::npos &&
      reason.starts_with(name + ":")) {
    return absent(name);
  }
  // Only a path names a file of the current folder: the loader looks for plain names elsewhere.
  const bool path = name.find('/') != std::string::npos;
  if (path && std::ifstream(name).good() && !isElf(name)) return {name, "not an ELF file"};
  if (reason.starts_with(name + ": ")) reason.erase(0, name.size() + 2);
  return {name, std::move(reason)};
}

/// Tries one name; adds to the result what came of it.
void tryLibrary(const std::string& name, VisaLibraryResult& result) {
  ::dlerror();
  void* const loaded = ::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (loaded == nullptr) {
    result.failures.push_back(loaderFailure(name));
    return;
  }
  std::shared_ptr<void> library(loaded, ::dlclose);
  VisaFunctions functions;
  const std::string missing = bindAll(library.get(), functions);
  if (!missing.empty()) {
    result.failures.push_back({name, "lacks " + missing});
    return;
  }
  result.library = visaOver(std::move(library), functions);
  result.name = name;
}

}  // namespace

/// An empty name is refused here, for to the loader it means the running program.
VisaLibraryResult loadVisaLibrary(const std::string& path) {
  VisaLibraryResult result;
  if (path.empty()) {
    result.failures.push_back(absent(path));
  } else {
    tryLibrary(path, result);
  }
  return result;
}

VisaLibraryResult loadVisaLibrary() {
  constexpr std::array names{"libivivisa.so.7", "libivivisa.so",
                             "libvisa.so",      "libvisa.so.0",
                             "libvisa.so.7",    "librsvisa.so",
                             "libktvisa32.so",  "/usr/local/vxipnp/linux/bin/libvisa.so.7"};
  VisaLibraryResult result;
  for (const char* name : names) {
    tryLibrary(name, result);
    if (result.library) break;
  }
  return result;
}

}  // namespace lumodevice::platform
