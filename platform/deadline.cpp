#include "platform/deadline.hpp"

#include <algorithm>
#include <limits>

#include "lumodevice/io/visa.hpp"

namespace lumodevice::platform {

Deadline::Deadline(std::uint32_t milliseconds)
    : never_(milliseconds == io::VI_TMO_INFINITE),
      due_(std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds)) {}

int Deadline::remaining() const {
  if (never_) return -1;
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(due_ - std::chrono::steady_clock::now()).count();
  return static_cast<int>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max()));
}

}  // namespace lumodevice::platform
