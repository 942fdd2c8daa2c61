#include "platform/builtin/stream_socket.hpp"

#include <memory>
#include <string>

#include "platform/windows/winsock.hpp"

namespace lumodevice::windows {

/// select() and not WSAPoll(), which does not tell of a connection that was refused before
/// Windows 10.
bool waitReady(SOCKET socket, bool writing, const platform::Deadline& deadline) {
  fd_set watched;
  FD_ZERO(&watched);
  FD_SET(socket, &watched);
  fd_set broken = watched;
  const int left = deadline.remaining();
  timeval span{.tv_sec = left / 1000, .tv_usec = left % 1000 * 1000};
  return ::select(0, writing ? nullptr : &watched, writing ? &watched : nullptr, &broken,
                  left < 0 ? nullptr : &span) != 0;
}

}  // namespace lumodevice::windows

namespace lumodevice::platform {

namespace {

using windows::waitReady;

SOCKET number(StreamSocket::Number socket) {
  return static_cast<SOCKET>(socket);
}

int size32(std::size_t size) {
  constexpr std::size_t kMost = std::size_t{1} << 30;
  return static_cast<int>(size < kMost ? size : kMost);
}

void switchOn(SOCKET socket, int level, int option) {
  const BOOL on = TRUE;
  (void)::setsockopt(socket, level, option, reinterpret_cast<const char*>(&on), sizeof on);
}

/// 0 when connected, else the number of the error.
int connectWithin(SOCKET socket, const addrinfo& target, const Deadline& deadline) {
  if (::connect(socket, target.ai_addr, static_cast<int>(target.ai_addrlen)) == 0) return 0;
  if (const int error = ::WSAGetLastError(); error != WSAEWOULDBLOCK) return error;
  if (!waitReady(socket, true, deadline)) return WSAETIMEDOUT;
  int error = 0;
  int size = sizeof error;
  if (::getsockopt(socket, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size) != 0) {
    return ::WSAGetLastError();
  }
  return error;
}

io::ViStatus openStatus(int error) {
  if (error == WSAETIMEDOUT) return io::VI_ERROR_TMO;
  if (error == WSAECONNREFUSED) return io::VI_ERROR_NLISTENERS;
  if (error == WSAEACCES) return io::VI_ERROR_NPERMISSION;
  return io::VI_ERROR_RSRC_NFOUND;
}

io::ViStatus transferStatus(int error) {
  return error == WSAENOBUFS ? io::VI_ERROR_ALLOC : io::VI_ERROR_CONN_LOST;
}

}  // namespace

/// Every socket keeps Winsock in use; the last one that goes lets go of it.
StreamSocket StreamSocket::connect(const SocketAddress& address, const Deadline& deadline,
                                   io::ViStatus& status) {
  const windows::Winsock winsock;
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  status = io::VI_ERROR_MACHINE_NAVAIL;
  if (::getaddrinfo(address.host.c_str(), std::to_string(address.port).c_str(), &hints, &found) !=
      0) {
    return {};
  }
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> targets(found, ::freeaddrinfo);
  for (const addrinfo* target = found; target != nullptr; target = target->ai_next) {
    const SOCKET opened = ::socket(target->ai_family, target->ai_socktype, target->ai_protocol);
    if (opened == INVALID_SOCKET) {
      status = openStatus(::WSAGetLastError());
      continue;
    }
    StreamSocket socket(static_cast<Number>(opened));
    WSADATA data{};
    (void)::WSAStartup(MAKEWORD(2, 2), &data);
    u_long nonBlocking = 1;
    const bool made = ::ioctlsocket(opened, FIONBIO, &nonBlocking) == 0;
    const int error = made ? connectWithin(opened, *target, deadline) : ::WSAGetLastError();
    if (error == 0) {
      status = io::VI_SUCCESS;
      switchOn(opened, IPPROTO_TCP, TCP_NODELAY);
      switchOn(opened, SOL_SOCKET, SO_KEEPALIVE);
      return socket;
    }
    status = openStatus(error);
  }
  return {};
}

StreamSocket::~StreamSocket() {
  if (socket_ == kNone) return;
  ::closesocket(number(socket_));
  ::WSACleanup();
}

/// The socket never blocks: here a receive alone cannot be told whether it may.
StreamSocket::Wait StreamSocket::waitOf(std::uint32_t timeout) {
  return {timeout, false};
}

io::ViStatus StreamSocket::receive(std::span<char> first, std::span<char> second, Wait& wait,
                                   std::size_t& count) {
  const std::span<char> room = first.empty() ? second : first;
  while (true) {
    const int size = ::recv(number(socket_), room.data(), size32(room.size()), 0);
    if (size > 0) {
      count = static_cast<std::size_t>(size);
      return io::VI_SUCCESS;
    }
    if (size == 0) return io::VI_ERROR_CONN_LOST;
    if (const int error = ::WSAGetLastError(); error != WSAEWOULDBLOCK) {
      return transferStatus(error);
    }
    if (wait.immediate_ || !waitReady(number(socket_), false, wait.deadline_)) {
      return io::VI_ERROR_TMO;
    }
  }
}

std::size_t StreamSocket::receiveNow(std::span<char> buffer) {
  const int size = ::recv(number(socket_), buffer.data(), size32(buffer.size()), 0);
  return size > 0 ? static_cast<std::size_t>(size) : 0;
}

io::ViStatus StreamSocket::send(std::string_view data, const Deadline& deadline,
                                std::uint32_t& count) {
  while (count < data.size()) {
    const int size = ::send(number(socket_), data.data() + count, size32(data.size() - count), 0);
    if (size >= 0) {
      count += static_cast<std::uint32_t>(size);
    } else if (const int error = ::WSAGetLastError(); error != WSAEWOULDBLOCK) {
      return transferStatus(error);
    } else if (!waitReady(number(socket_), true, deadline)) {
      return io::VI_ERROR_TMO;
    }
  }
  return io::VI_SUCCESS;
}

}  // namespace lumodevice::platform
