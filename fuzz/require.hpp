#pragma once

#include <stdexcept>

namespace lumodevice::fuzz {

/// What must hold whatever the input is: a fuzzer ends at the first input for which it does not.
inline void require(bool holds, const char* what) {
  if (!holds) throw std::logic_error(what);
}

}  // namespace lumodevice::fuzz
