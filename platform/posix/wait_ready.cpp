#include "platform/posix/wait_ready.hpp"

#include <cerrno>
#include <poll.h>

namespace lumodevice::posix {

bool waitReady(int descriptor, short events, const platform::Deadline& deadline) {
  pollfd watched{.fd = descriptor, .events = events, .revents = 0};
  while (true) {
    const int ready = ::poll(&watched, 1, deadline.remaining());
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return true;  // the act itself will tell what is wrong
    if (ready == 0 && deadline.remaining() == 0) return false;
  }
}

}  // namespace lumodevice::posix
