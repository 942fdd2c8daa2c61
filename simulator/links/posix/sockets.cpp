#include "simulator/links/sockets.hpp"

#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <system_error>

namespace zansim::sockets {

namespace {

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

bool wouldBlock() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

Transfer result(ssize_t moved, std::size_t& count) {
  count = moved > 0 ? static_cast<std::size_t>(moved) : 0;
  if (moved >= 0) {
    return Transfer::Done;
  }
  return wouldBlock() ? Transfer::Later : Transfer::Over;
}

}  // namespace

void wait(std::vector<Watched>& watched, int milliseconds) {
  std::vector<pollfd> polls;
  polls.reserve(watched.size());
  for (const Watched& each : watched) {
    const int events = (each.reading ? POLLIN : 0) | (each.writing ? POLLOUT : 0);
    polls.push_back({each.number, static_cast<short>(events), 0});
  }
  if (::poll(polls.data(), polls.size(), milliseconds) < 0 && errno != EINTR) {
    fail("cannot wait for hosts");
  }
  for (std::size_t i = 0; i < polls.size(); ++i) {
    watched[i].readable = (polls[i].revents & POLLIN) != 0;
    watched[i].gone = !watched[i].readable && (polls[i].revents & (POLLHUP | POLLERR)) != 0;
  }
}

Descriptor listenOn(std::uint16_t& port) {
  Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  const int on = 1;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (!socket.isOpen() ||
      ::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
      ::bind(socket.get(), generic, length) != 0 || ::listen(socket.get(), SOMAXCONN) != 0 ||
      ::getsockname(socket.get(), generic, &length) != 0) {
    fail("cannot listen on 127.0.0.1:" + std::to_string(port) + " (port 0 takes any free one)");
  }
  port = ntohs(address.sin_port);
  return socket;
}

Descriptor acceptFrom(const Descriptor& listener, bool& exhausted) {
  Descriptor socket(::accept4(listener.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  exhausted = !socket.isOpen() && !wouldBlock();
  if (socket.isOpen()) {
    const int on = 1;
    ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  }
  return socket;
}

Transfer receive(Descriptor::Number from, std::span<char> bytes, std::size_t& count) {
  const Transfer transfer = result(::read(from, bytes.data(), bytes.size()), count);
  return transfer == Transfer::Done && count == 0 ? Transfer::Over : transfer;
}

/// A terminal, which is no socket, is written to.
Transfer send(Descriptor::Number to, std::string_view bytes, std::size_t& count) {
  const ssize_t sent = ::send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  if (sent < 0 && errno == ENOTSOCK) {
    return result(::write(to, bytes.data(), bytes.size()), count);
  }
  return result(sent, count);
}

}  // namespace zansim::sockets
