#pragma once

#include "platform/deadline.hpp"

namespace lumodevice::posix {

/// Waits until the descriptor is ready for `events` (of poll()), hung up or broken; false when the
/// deadline comes first.
[[nodiscard]] bool waitReady(int descriptor, short events, const platform::Deadline& deadline);

}  // namespace lumodevice::posix
