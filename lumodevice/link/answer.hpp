#pragma once

#include <cstddef>

#include "lumodevice/link/transport.hpp"

namespace lumodevice::link {

/// An answer on its way, which reads itself in the pieces in which it comes: whoever has to read it
/// to its end for another one need not know what it is.
class Answer {
 public:
  virtual ~Answer() = default;
  /// Takes what has come since the last time. Throws a Fault for what the link does not do.
  [[nodiscard]] virtual Reading readOn() = 0;
  /// Bytes that have come so far.
  [[nodiscard]] virtual std::size_t size() const = 0;
};

/// How long an answer is waited for that may take its time, in milliseconds.
struct Patience {
  double firstByte;
  double silence;  ///< between its bytes
  double whole;    ///< for all of it
};

}  // namespace lumodevice::link
