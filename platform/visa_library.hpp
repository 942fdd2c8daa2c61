#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumodevice/io/visa.hpp"

namespace lumodevice::platform {

/// Why a name did not lead to a usable VISA library.
struct VisaLibraryFailure {
  std::string name;
  std::string
      reason;  ///< "no such file", "not an ELF file", "lacks viRead", or the loader's own words
  bool absent = false;  ///< there is no such file; else it is there and of no use
};

/// Either a library or the reasons why there is none. The library stays loaded as long as the
/// object.
struct VisaLibraryResult {
  std::unique_ptr<io::Visa> library;
  std::string name;  ///< what was loaded
  std::vector<VisaLibraryFailure> failures;

  /// "name: reason; name: reason" for one line of a message.
  [[nodiscard]] std::string failureText() const;
};

/// Loads the VISA shared library at `path` (a name without "/" is searched for as the loader does).
/// What it hands over is not trusted: texts are cut to VI_FIND_BUFLEN - 1 bytes, counts to what was
/// asked for, and its writes go to buffers with room to spare.
[[nodiscard]] VisaLibraryResult loadVisaLibrary(const std::string& path);

/// The first that loads of the names under which VISA libraries are usually installed; the failures
/// name every one that was tried before.
[[nodiscard]] VisaLibraryResult loadVisaLibrary();

/// What stands in where no VISA library is installed: the instruments that this machine reaches by
/// its own means.
[[nodiscard]] std::unique_ptr<io::Visa> builtinVisa();

}  // namespace lumodevice::platform
