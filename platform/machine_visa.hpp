#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lumodevice/io/forwarding_visa.hpp"
#include "platform/visa_library.hpp"

namespace lumodevice::platform {

/// The VISA of this machine: the library that was named, else the first of the usual ones, else the
/// built-in layer. The usual ones are looked for when the first call comes: a program that never
/// uses VISA does not load any.
class MachineVisa : public io::ForwardingVisa {
 public:
  /// Throws io::IoFault(VI_ERROR_LIBRARY_NFOUND) when the named library cannot be loaded.
  explicit MachineVisa(const std::optional<std::string>& library);

  /// The library's name, or "built-in layer"; "" until it is known.
  [[nodiscard]] const std::string& name() const { return name_; }
  /// Why the built-in layer had to stand in; empty when it did not.
  [[nodiscard]] const std::vector<VisaLibraryFailure>& failures() const { return failures_; }

 protected:
  [[nodiscard]] Visa& target() override;

 private:
  std::unique_ptr<Visa> visa_;
  std::string name_;
  std::vector<VisaLibraryFailure> failures_;
};

}  // namespace lumodevice::platform
