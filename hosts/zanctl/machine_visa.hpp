#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "lumodevice/io/forwarding_visa.hpp"
#include "platform/posix/visa_library.hpp"

namespace zanctl {

/// Why none of these libraries could be used: that none is installed, or what is wrong with those
/// that are. Empty when there are no failures.
[[nodiscard]] std::string whyNoLibrary(
    const std::vector<lumodevice::posix::VisaLibraryFailure>& failures);

/// The VISA of this machine: the library that was named, else the first of the usual ones, else the
/// built-in layer. The usual ones are looked for when the first call comes: a command that never
/// uses VISA does not load any.
class MachineVisa : public lumodevice::io::ForwardingVisa {
 public:
  /// Throws Unusable when the named library cannot be loaded.
  explicit MachineVisa(const std::optional<std::string>& library);

  ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                  std::uint32_t accessMode, std::uint32_t openTimeout,
                  ViSession& instrument) override;

  /// The library's name, or "built-in layer".
  [[nodiscard]] const std::string& name() const { return name_; }
  /// One line on why nothing was found, and what to try.
  [[nodiscard]] std::string advice() const;

 protected:
  [[nodiscard]] Visa& target() override;

 private:
  std::unique_ptr<Visa> visa_;
  std::string name_;
  /// Why the built-in layer had to stand in.
  std::vector<lumodevice::posix::VisaLibraryFailure> failures_;
  /// What the last open of each resource came to.
  std::set<std::string> opened_;
  std::map<std::string, ViStatus> refused_;
};

}  // namespace zanctl
