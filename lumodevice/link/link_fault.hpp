#pragma once

#include <string>

#include "lumodevice/failure.hpp"
#include "lumodevice/io/visa.hpp"
#include "lumodevice/text/fault.hpp"

namespace lumodevice::link {

/// The number of a fault of VISA COM: there is no object, or it has no session.
inline constexpr int kObjectNotSet = 91;

/// A failure whose kind is known where it happens; the number is that of the kind.
class LinkFault : public Fault {
 public:
  explicit LinkFault(FailureKind kind)
      : Fault(static_cast<int>(kind), std::string(rowOf(kind).sentence)), kind_(kind) {}
  [[nodiscard]] FailureKind kind() const { return kind_; }

 private:
  FailureKind kind_;
};

/// Why a call of VISA failed; None for one that did not.
[[nodiscard]] FailureKind kindOf(io::ViStatus status);

/// Why a step failed: of a link that is open, or (`opening`) of one that is being opened.
[[nodiscard]] FailureKind kindOf(const Fault& fault, bool opening = false);

}  // namespace lumodevice::link
