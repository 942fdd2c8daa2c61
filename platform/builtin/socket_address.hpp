#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lumodevice::platform {

/// What a raw socket resource ("TCPIP0::HOST::PORT::SOCKET") names. The host is a name, an IPv4
/// address or an IPv6 address in brackets (kept here without them).
struct SocketAddress {
  int board = 0;
  std::string host;
  std::uint16_t port = 0;
};

/// Nothing when `resource` is not such a name. Case does not matter, the board number may be
/// missing.
[[nodiscard]] std::optional<SocketAddress> parseSocketAddress(std::string_view resource);

}  // namespace lumodevice::platform
