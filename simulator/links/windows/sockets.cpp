#include "simulator/links/sockets.hpp"

#include <string>
#include <system_error>
#include <ws2tcpip.h>

namespace zansim {

void closeSocket(std::uintptr_t socket) {
  ::closesocket(socket);
}

}  // namespace zansim

namespace zansim::sockets {

namespace {

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(::WSAGetLastError(), std::system_category(), what);
}

bool wouldBlock() {
  return ::WSAGetLastError() == WSAEWOULDBLOCK;
}

Transfer result(int moved, std::size_t& count) {
  count = moved > 0 ? static_cast<std::size_t>(moved) : 0;
  if (moved >= 0) {
    return Transfer::Done;
  }
  return wouldBlock() ? Transfer::Later : Transfer::Over;
}

/// No inherited socket, which would keep the port after the program's end.
bool makeNonBlocking(SOCKET socket) {
  u_long on = 1;
  return ::ioctlsocket(socket, FIONBIO, &on) == 0 &&
         ::SetHandleInformation(reinterpret_cast<HANDLE>(socket), HANDLE_FLAG_INHERIT, 0) != 0;
}

}  // namespace

/// select() takes no empty sets, and 64 sockets where no more is said: the hosts that are served
/// and the one that waits.
void wait(std::vector<Watched>& watched, int milliseconds) {
  fd_set reading;
  fd_set writing;
  fd_set broken;
  FD_ZERO(&reading);
  FD_ZERO(&writing);
  FD_ZERO(&broken);
  for (const Watched& each : watched) {
    if (each.number != Descriptor::kNone) {
      if (each.reading) FD_SET(each.number, &reading);
      if (each.writing) FD_SET(each.number, &writing);
      FD_SET(each.number, &broken);
    }
  }
  if (broken.fd_count == 0) {
    ::Sleep(static_cast<DWORD>(milliseconds));
    return;
  }
  timeval span{.tv_sec = milliseconds / 1000, .tv_usec = milliseconds % 1000 * 1000};
  if (::select(0, &reading, &writing, &broken, &span) < 0) {
    fail("cannot wait for hosts");
  }
  for (Watched& each : watched) {
    if (each.number != Descriptor::kNone) {
      each.readable = FD_ISSET(each.number, &reading) != 0;
      each.gone = !each.readable && FD_ISSET(each.number, &broken) != 0;
    }
  }
}

/// Winsock stays in use until the end of the process.
Descriptor listenOn(std::uint16_t& port) {
  WSADATA data{};
  (void)::WSAStartup(MAKEWORD(2, 2), &data);
  Descriptor socket(::socket(AF_INET, SOCK_STREAM, 0));
  // Else another program could take the port over.
  const BOOL on = TRUE;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int length = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (!socket.isOpen() || !makeNonBlocking(socket.get()) ||
      ::setsockopt(socket.get(), SOL_SOCKET, SO_EXCLUSIVEADDRUSE,
                   reinterpret_cast<const char*>(&on), sizeof on) != 0 ||
      ::bind(socket.get(), generic, length) != 0 || ::listen(socket.get(), SOMAXCONN) != 0 ||
      ::getsockname(socket.get(), generic, &length) != 0) {
    fail("cannot listen on 127.0.0.1:" + std::to_string(port) + " (port 0 takes any free one)");
  }
  port = ntohs(address.sin_port);
  return socket;
}

Descriptor acceptFrom(const Descriptor& listener, bool& exhausted) {
  Descriptor socket(::accept(listener.get(), nullptr, nullptr));
  exhausted = !socket.isOpen() && !wouldBlock();
  if (socket.isOpen()) {
    const BOOL on = TRUE;
    ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on),
                 sizeof on);
    exhausted = !makeNonBlocking(socket.get());
  }
  return exhausted ? Descriptor() : std::move(socket);
}

Transfer receive(Descriptor::Number from, std::span<char> bytes, std::size_t& count) {
  const Transfer transfer =
      result(::recv(from, bytes.data(), static_cast<int>(bytes.size()), 0), count);
  return transfer == Transfer::Done && count == 0 ? Transfer::Over : transfer;
}

Transfer send(Descriptor::Number to, std::string_view bytes, std::size_t& count) {
  return result(::send(to, bytes.data(), static_cast<int>(bytes.size()), 0), count);
}

}  // namespace zansim::sockets
