#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "lumodevice/io/forwarding_visa.hpp"

namespace zanctl {

/// The VISA of this machine: the library that was named, else the first of the usual ones, else the
/// built-in layer. The usual ones are looked for when the first call comes: a command that never
/// uses VISA does not load any.
class MachineVisa : public lumodevice::io::ForwardingVisa {
 public:
  /// Throws WrongCommandLine when the named library cannot be loaded.
  explicit MachineVisa(const std::optional<std::string>& library);

  ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                  std::uint32_t accessMode, std::uint32_t openTimeout,
                  ViSession& instrument) override;

  /// The library's name, or "the built-in layer".
  [[nodiscard]] const std::string& name() const { return name_; }
  /// One line on why nothing was found, and what to try.
  [[nodiscard]] std::string advice() const;

 protected:
  [[nodiscard]] Visa& target() override;

 private:
  std::unique_ptr<Visa> visa_;
  std::string name_;
  /// The names that were tried in vain when the built-in layer had to stand in.
  std::string tried_;
  /// Those of them that are there and cannot be used, each with the reason.
  std::string broken_;
  /// The resources that could not be opened.
  std::map<std::string, ViStatus> refused_;
  bool opened_ = false;
};

}  // namespace zanctl
