#pragma once

#include <cstddef>

namespace lumodevice::support {

/// Bytes of the largest single request for memory since the last look. A program that links this
/// has counting operators new and delete, and not those of the sanitizer.
[[nodiscard]] std::size_t takeLargestRequest();

}  // namespace lumodevice::support
