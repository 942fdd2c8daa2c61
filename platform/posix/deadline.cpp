#include "platform/posix/deadline.hpp"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <poll.h>

#include "lumodevice/io/visa.hpp"

namespace lumodevice::posix {

Deadline::Deadline(std::uint32_t milliseconds)
    : never_(milliseconds == io::VI_TMO_INFINITE),
      due_(std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds)) {}

int Deadline::remaining() const {
  if (never_) return -1;
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(due_ - std::chrono::steady_clock::now()).count();
  return static_cast<int>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max()));
}

bool waitReady(int descriptor, short events, const Deadline& deadline) {
  pollfd watched{.fd = descriptor, .events = events, .revents = 0};
  while (true) {
    const int ready = ::poll(&watched, 1, deadline.remaining());
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return true;  // the act itself will tell what is wrong
    if (ready == 0 && deadline.remaining() == 0) return false;
  }
}

}  // namespace lumodevice::posix
