#include "platform/builtin/stream_socket.hpp"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

#include "platform/posix/host_lookup.hpp"
#include "platform/posix/wait_ready.hpp"

namespace lumodevice::platform {

namespace {

using posix::waitReady;

int number(StreamSocket::Number socket) {
  return static_cast<int>(socket);
}

void switchOn(int socket, int level, int option) {
  const int on = 1;
  (void)::setsockopt(socket, level, option, &on, sizeof on);
}

/// 0 when connected, else the errno.
int connectWithin(int socket, const addrinfo& target, const Deadline& deadline) {
  if (::connect(socket, target.ai_addr, target.ai_addrlen) == 0) return 0;
  if (errno != EINPROGRESS && errno != EINTR) return errno;
  if (!waitReady(socket, POLLOUT, deadline)) return ETIMEDOUT;
  int error = 0;
  socklen_t size = sizeof error;
  if (::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) != 0) return errno;
  return error;
}

io::ViStatus openStatus(int error) {
  if (error == ETIMEDOUT) return io::VI_ERROR_TMO;
  if (error == ECONNREFUSED) return io::VI_ERROR_NLISTENERS;
  if (error == EACCES || error == EPERM) return io::VI_ERROR_NPERMISSION;
  return io::VI_ERROR_RSRC_NFOUND;
}

io::ViStatus transferStatus(int error) {
  return error == ENOMEM || error == ENOBUFS ? io::VI_ERROR_ALLOC : io::VI_ERROR_CONN_LOST;
}

bool wouldBlock(int error) {
  return error == EAGAIN || error == EWOULDBLOCK;
}

}  // namespace

StreamSocket StreamSocket::connect(const SocketAddress& address, const Deadline& deadline,
                                   io::ViStatus& status) {
  const posix::HostLookup host = posix::lookUpHost(address.host, address.port, deadline);
  status = host.late ? io::VI_ERROR_TMO : io::VI_ERROR_MACHINE_NAVAIL;
  for (const addrinfo* target = host.targets.get(); target != nullptr; target = target->ai_next) {
    StreamSocket socket(::socket(target->ai_family,
                                 target->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK,
                                 target->ai_protocol));
    const int descriptor = number(socket.socket_);
    const int error = socket ? connectWithin(descriptor, *target, deadline) : errno;
    if (error == 0) {
      status = io::VI_SUCCESS;
      switchOn(descriptor, IPPROTO_TCP, TCP_NODELAY);
      switchOn(descriptor, SOL_SOCKET, SO_KEEPALIVE);
      (void)::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
      return socket;
    }
    status = openStatus(error);
  }
  return {};
}

StreamSocket::~StreamSocket() {
  if (socket_ != kNone) ::close(number(socket_));
}

/// Hands the time-out on when a read first needs it: hosts set one around a transfer and back again
/// more often than they wait. The kernel takes a time of zero for "for ever", which is what an
/// infinite time-out means; an immediate one never gets that far.
StreamSocket::Wait StreamSocket::waitOf(std::uint32_t timeout) {
  if (ownTimeout_ != timeout) {
    const std::uint32_t span = timeout == io::VI_TMO_INFINITE ? 0 : timeout;
    const timeval wait{.tv_sec = static_cast<time_t>(span / 1000),
                       .tv_usec = static_cast<suseconds_t>(span % 1000 * 1000)};
    if (::setsockopt(number(socket_), SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait) != 0) {
      return {timeout, false};
    }
    ownTimeout_ = timeout;
  }
  return {timeout, true};
}

io::ViStatus StreamSocket::receive(std::span<char> first, std::span<char> second, Wait& wait,
                                   std::size_t& count) {
  std::array<iovec, 2> rooms{{{.iov_base = first.data(), .iov_len = first.size()},
                              {.iov_base = second.data(), .iov_len = second.size()}}};
  msghdr message{};
  message.msg_iov = rooms.data();
  message.msg_iovlen = rooms.size();
  while (true) {
    const int flags = wait.blocking_ ? 0 : MSG_DONTWAIT;
    const ssize_t size = first.empty()
                             ? ::recv(number(socket_), second.data(), second.size(), flags)
                             : ::recvmsg(number(socket_), &message, flags);
    if (size > 0) {
      wait.blocking_ = false;
      count = static_cast<std::size_t>(size);
      return io::VI_SUCCESS;
    }
    if (size == 0) return io::VI_ERROR_CONN_LOST;
    const bool interrupted = errno == EINTR;
    if (!interrupted && !wouldBlock(errno)) return transferStatus(errno);
    const bool waited = wait.blocking_ && !interrupted;
    wait.blocking_ = false;
    if (waited || wait.immediate_ || !waitReady(number(socket_), POLLIN, wait.deadline_)) {
      return io::VI_ERROR_TMO;
    }
  }
}

std::size_t StreamSocket::receiveNow(std::span<char> buffer) {
  const ssize_t size = ::recv(number(socket_), buffer.data(), buffer.size(), MSG_DONTWAIT);
  return size > 0 ? static_cast<std::size_t>(size) : 0;
}

io::ViStatus StreamSocket::send(std::string_view data, const Deadline& deadline,
                                std::uint32_t& count) {
  while (count < data.size()) {
    const ssize_t size = ::send(number(socket_), data.data() + count, data.size() - count,
                                MSG_NOSIGNAL | MSG_DONTWAIT);
    if (size >= 0) {
      count += static_cast<std::uint32_t>(size);
    } else if (errno == EINTR) {
      continue;
    } else if (!wouldBlock(errno)) {
      return transferStatus(errno);
    } else if (!waitReady(number(socket_), POLLOUT, deadline)) {
      return io::VI_ERROR_TMO;
    }
  }
  return io::VI_SUCCESS;
}

}  // namespace lumodevice::platform
