#include "platform/visa_library.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <limits>
#include <string_view>
#include <utility>

namespace lumodevice::platform {

namespace {

/// VISA's ViAttrState: as wide as an address, whatever the headers of a maker say.
using AttributeState = std::uintptr_t;

struct Functions {
  io::ViStatus (*viOpenDefaultRM)(io::ViSession*) = nullptr;
  io::ViStatus (*viFindRsrc)(io::ViSession, const char*, io::ViFindList*, std::uint32_t*,
                             char*) = nullptr;
  io::ViStatus (*viFindNext)(io::ViFindList, char*) = nullptr;
  io::ViStatus (*viOpen)(io::ViSession, const char*, std::uint32_t, std::uint32_t,
                         io::ViSession*) = nullptr;
  io::ViStatus (*viClose)(io::ViObject) = nullptr;
  io::ViStatus (*viGetAttribute)(io::ViObject, io::ViAttr, void*) = nullptr;
  io::ViStatus (*viSetAttribute)(io::ViObject, io::ViAttr, AttributeState) = nullptr;
  io::ViStatus (*viRead)(io::ViSession, unsigned char*, std::uint32_t, std::uint32_t*) = nullptr;
  io::ViStatus (*viWrite)(io::ViSession, const unsigned char*, std::uint32_t,
                          std::uint32_t*) = nullptr;
};

struct Unload {
  void operator()(void* library) const { ::dlclose(library); }
};
using LoadedLibrary = std::unique_ptr<void, Unload>;

/// Resources that one search may claim to have found: a caller walks them all, so a count that
/// cannot be true would keep it busy for hours.
constexpr std::uint32_t kMostMatches = 4096;

constexpr std::uint32_t kTextAttributeBit = 0x80000000;

/// Room for a text of up to VI_FIND_BUFLEN bytes and for what a careless library writes beyond.
class TextBuffer {
 public:
  char* data() { return bytes_.data(); }
  [[nodiscard]] std::string text() const {
    return {bytes_.data(), ::strnlen(bytes_.data(), io::VI_FIND_BUFLEN - 1)};
  }

 private:
  std::array<char, 16 * io::VI_FIND_BUFLEN> bytes_{};
};

class VisaLibrary : public io::Visa {
 public:
  VisaLibrary(LoadedLibrary library, const Functions& functions)
      : library_(std::move(library)), call_(functions) {}

  io::ViStatus viOpenDefaultRM(io::ViSession& resourceManager) override {
    resourceManager = 0;
    return call_.viOpenDefaultRM(&resourceManager);
  }

  io::ViStatus viFindRsrc(io::ViSession resourceManager, const std::string& expression,
                          io::ViFindList& findList, std::uint32_t& count,
                          std::string& descriptor) override {
    TextBuffer found;
    findList = 0;
    count = 0;
    const io::ViStatus status =
        call_.viFindRsrc(resourceManager, expression.c_str(), &findList, &count, found.data());
    count = std::min(count, kMostMatches);
    if (status >= 0) descriptor = found.text();
    return status;
  }

  io::ViStatus viFindNext(io::ViFindList findList, std::string& descriptor) override {
    TextBuffer found;
    const io::ViStatus status = call_.viFindNext(findList, found.data());
    if (status >= 0) descriptor = found.text();
    return status;
  }

  io::ViStatus viOpen(io::ViSession resourceManager, const std::string& descriptor,
                      std::uint32_t accessMode, std::uint32_t openTimeout,
                      io::ViSession& instrument) override {
    instrument = 0;
    return call_.viOpen(resourceManager, descriptor.c_str(), accessMode, openTimeout, &instrument);
  }

  io::ViStatus viClose(io::ViObject object) override { return call_.viClose(object); }

  io::ViStatus viGetAttribute(io::ViObject object, io::ViAttr attribute,
                              std::string& value) override {
    if ((attribute & kTextAttributeBit) == 0) return io::VI_ERROR_NSUP_ATTR;
    TextBuffer read;
    const io::ViStatus status = call_.viGetAttribute(object, attribute, read.data());
    if (status >= 0) value = read.text();
    return status;
  }

  io::ViStatus viSetAttribute(io::ViObject object, io::ViAttr attribute,
                              std::uint32_t value) override {
    return call_.viSetAttribute(object, attribute, AttributeState{value});
  }

  /// Short answers, whose length the instrument decides, take the way over a roomy buffer; long
  /// reads go straight to the caller's.
  io::ViStatus viRead(io::ViSession instrument, std::span<char> buffer,
                      std::uint32_t& count) override {
    std::array<unsigned char, 8192> room;
    const bool isShort = buffer.size() <= room.size() / 2;
    if (isShort) std::fill_n(room.begin(), buffer.size(), static_cast<unsigned char>(0));
    auto* target = isShort ? room.data() : reinterpret_cast<unsigned char*>(buffer.data());
    const auto asked = static_cast<std::uint32_t>(
        std::min<std::size_t>(buffer.size(), std::numeric_limits<std::uint32_t>::max()));
    count = 0;
    const io::ViStatus status = call_.viRead(instrument, target, asked, &count);
    count = std::min(count, asked);
    if (isShort) std::copy_n(room.begin(), count, buffer.begin());
    return status;
  }

  io::ViStatus viWrite(io::ViSession instrument, std::string_view data,
                       std::uint32_t& count) override {
    const auto asked = static_cast<std::uint32_t>(
        std::min<std::size_t>(data.size(), std::numeric_limits<std::uint32_t>::max()));
    count = 0;
    const io::ViStatus status = call_.viWrite(
        instrument, reinterpret_cast<const unsigned char*>(data.data()), asked, &count);
    count = std::min(count, asked);
    return status;
  }

 private:
  LoadedLibrary library_;
  Functions call_;
};

/// Looks `name` up; a missing one is kept in `missing` for the message.
template <typename Function>
void bind(void* library, const char* name, Function& function, std::string& missing) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
  if (function == nullptr) missing += (missing.empty() ? "" : ", ") + std::string(name);
}

std::string bindAll(void* library, Functions& functions) {
  std::string missing;
  bind(library, "viOpenDefaultRM", functions.viOpenDefaultRM, missing);
  bind(library, "viFindRsrc", functions.viFindRsrc, missing);
  bind(library, "viFindNext", functions.viFindNext, missing);
  bind(library, "viOpen", functions.viOpen, missing);
  bind(library, "viClose", functions.viClose, missing);
  bind(library, "viGetAttribute", functions.viGetAttribute, missing);
  bind(library, "viSetAttribute", functions.viSetAttribute, missing);
  bind(library, "viRead", functions.viRead, missing);
  bind(library, "viWrite", functions.viWrite, missing);
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
  LoadedLibrary library(::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL));
  if (!library) {
    result.failures.push_back(loaderFailure(name));
    return;
  }
  Functions functions;
  const std::string missing = bindAll(library.get(), functions);
  if (!missing.empty()) {
    result.failures.push_back({name, "lacks " + missing});
    return;
  }
  result.library = std::make_unique<VisaLibrary>(std::move(library), functions);
  result.name = name;
}

}  // namespace

std::string VisaLibraryResult::failureText() const {
  std::string text;
  for (const VisaLibraryFailure& failure : failures) {
    if (!text.empty()) text += "; ";
    text.append(failure.name).append(": ").append(failure.reason);
  }
  return text;
}

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
