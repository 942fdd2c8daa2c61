#pragma once

#include <memory>
#include <netdb.h>
#include <string>

#include "platform/deadline.hpp"

namespace lumodevice::posix {

/// What an address of a host leads to; empty when nobody knows the host.
struct HostLookup {
  struct Free {
    void operator()(addrinfo* list) const { ::freeaddrinfo(list); }
  };
  std::unique_ptr<addrinfo, Free> targets;
  bool late = false;  ///< nobody had told when the deadline came
};

/// getaddrinfo(), or something of its kind.
using Resolver = int (*)(const char* host, const char* service, const addrinfo* hints,
                         addrinfo** targets);

/// Looks a host up for a stream socket, until the deadline at most. A number is no question; a name
/// may be one to servers that do not answer, and getaddrinfo() takes no deadline. So a name is
/// asked for on a thread of its own, which is left behind when it takes too long, and ends when it
/// has its answer.
[[nodiscard]] HostLookup lookUpHost(const std::string& host, int port,
                                    const platform::Deadline& deadline,
                                    Resolver resolver = ::getaddrinfo);

}  // namespace lumodevice::posix
