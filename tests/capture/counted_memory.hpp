#pragma once

#include <cstddef>

namespace lumodevice::capture {

/// The largest piece of memory that the program asked for since the last call, bytes. It replaces
/// the program's operator new.
[[nodiscard]] std::size_t largestAllocation();

}  // namespace lumodevice::capture
