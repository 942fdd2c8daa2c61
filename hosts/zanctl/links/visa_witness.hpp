#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/machine_visa.hpp"

namespace zanctl {

/// Why none of these libraries could be used: that none is installed, or what is wrong with those
/// that are. Empty when there are no failures.
[[nodiscard]] std::string whyNoLibrary(
    const std::vector<lumodevice::platform::VisaLibraryFailure>& failures);

/// The machine's VISA, which remembers what could be opened and why the rest could not.
class WitnessedVisa : public lumodevice::platform::MachineVisa {
 public:
  using MachineVisa::MachineVisa;

  ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                  std::uint32_t accessMode, std::uint32_t openTimeout,
                  ViSession& instrument) override;

  /// One line on why nothing was found, and what to try.
  [[nodiscard]] std::string advice() const;

 private:
  /// What the last open of each resource came to.
  std::set<std::string> opened_;
  std::map<std::string, ViStatus> refused_;
};

}  // namespace zanctl
