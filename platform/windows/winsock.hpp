#pragma once

// Before <windows.h>, which else brings the older of the two in.
#include <winsock2.h>
#include <ws2tcpip.h>

#include "platform/deadline.hpp"

namespace lumodevice::windows {

/// Winsock is in use as long as one of these lives.
class Winsock {
 public:
  Winsock() {
    WSADATA data{};
    (void)::WSAStartup(MAKEWORD(2, 2), &data);
  }
  ~Winsock() { ::WSACleanup(); }
  Winsock(const Winsock&) = delete;
  Winsock& operator=(const Winsock&) = delete;
};

/// Waits until the socket is ready for reading (or writing) or broken; false when the deadline
/// comes first.
[[nodiscard]] bool waitReady(SOCKET socket, bool writing, const platform::Deadline& deadline);

}  // namespace lumodevice::windows
