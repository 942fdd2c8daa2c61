#include "platform/posix/socket_session.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/uio.h>

namespace lumodevice::posix {

namespace {

constexpr std::uint32_t kLeastConnectTimeout = 2000;
constexpr std::size_t kReceiveSize = std::size_t{8} << 10;
/// What is discarded at most before a write: a peer that never stops sending must not hold it up.
constexpr int kMostDiscards = 2048;

void switchOn(int socket, int level, int option) {
  const int on = 1;
  (void)::setsockopt(socket, level, option, &on, sizeof on);
}

/// 0 when connected, else the errno.
int connectWithin(const FileDescriptor& socket, const addrinfo& target, const Deadline& deadline) {
  if (::connect(socket.get(), target.ai_addr, target.ai_addrlen) == 0) return 0;
  if (errno != EINPROGRESS && errno != EINTR) return errno;
  if (!waitReady(socket.get(), POLLOUT, deadline)) return ETIMEDOUT;
  int error = 0;
  socklen_t size = sizeof error;
  if (::getsockopt(socket.get(), SOL_SOCKET, SO_ERROR, &error, &size) != 0) return errno;
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

/// The wait of one read. The first is the kernel's own receive time-out where it has the right one,
/// so that a plain exchange costs no call but the receive; the rest of an answer in pieces is
/// waited for until the same deadline.
class SocketSession::Wait {
 public:
  Wait(std::uint32_t timeout, bool kernelTimesOut)
      : deadline_(timeout), immediate_(timeout == 0), blocking_(kernelTimesOut && !immediate_) {}

  [[nodiscard]] int receiveFlags() const { return blocking_ ? 0 : MSG_DONTWAIT; }
  /// After a receive that brought nothing: true when it is worth another.
  [[nodiscard]] bool again(int socket, bool interrupted) {
    const bool waited = blocking_ && !interrupted;
    blocking_ = false;
    return !waited && !immediate_ && waitReady(socket, POLLIN, deadline_);
  }
  void received() { blocking_ = false; }

 private:
  Deadline deadline_;
  bool immediate_;
  bool blocking_;
};

std::unique_ptr<SocketSession> SocketSession::connect(const SocketAddress& address,
                                                      std::uint32_t openTimeout,
                                                      io::ViStatus& status) {
  const Deadline deadline(std::max(openTimeout, kLeastConnectTimeout));
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICSERV;
  addrinfo* found = nullptr;
  status = io::VI_ERROR_MACHINE_NAVAIL;
  if (::getaddrinfo(address.host.c_str(), std::to_string(address.port).c_str(), &hints, &found) !=
      0) {
    return nullptr;
  }
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> targets(found, ::freeaddrinfo);
  for (const addrinfo* target = found; target != nullptr; target = target->ai_next) {
    FileDescriptor socket(::socket(target->ai_family,
                                   target->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK,
                                   target->ai_protocol));
    const int error = socket ? connectWithin(socket, *target, deadline) : errno;
    if (error == 0) {
      status = io::VI_SUCCESS;
      return std::make_unique<SocketSession>(std::move(socket), address.board);
    }
    status = openStatus(error);
  }
  return nullptr;
}

/// The name holds "ZAN" because an address that the operator typed is the operator's own choice of
/// an instrument, and only interfaces of that name are asked for their identity.
SocketSession::SocketSession(FileDescriptor socket, int board)
    : InstrumentSession("TCPIP" + std::to_string(board) + " (ZAN raw socket)"),
      socket_(std::move(socket)),
      received_(kReceiveSize) {
  switchOn(socket_.get(), IPPROTO_TCP, TCP_NODELAY);
  switchOn(socket_.get(), SOL_SOCKET, SO_KEEPALIVE);
  (void)::fcntl(socket_.get(), F_SETFL, ::fcntl(socket_.get(), F_GETFL) & ~O_NONBLOCK);
}

/// Hands the time-out on when a read first needs it: hosts set one around a transfer and back again
/// more often than they wait. The kernel takes a time of zero for "for ever", which is what an
/// infinite time-out means; an immediate one never gets that far.
bool SocketSession::kernelTimesOut() {
  if (kernelTimeout_ == settings().timeout) return true;
  const std::uint32_t timeout = settings().timeout == io::VI_TMO_INFINITE ? 0 : settings().timeout;
  const timeval wait{.tv_sec = static_cast<time_t>(timeout / 1000),
                     .tv_usec = static_cast<suseconds_t>(timeout % 1000 * 1000)};
  if (::setsockopt(socket_.get(), SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait) != 0) return false;
  kernelTimeout_ = settings().timeout;
  return true;
}

io::ViStatus SocketSession::read(std::span<char> buffer, std::uint32_t& count) {
  count = 0;
  io::ViStatus status = io::VI_SUCCESS;
  if (takeBuffered(buffer, count, status)) return status;
  Wait wait(settings().timeout, kernelTimesOut());
  do {
    const std::span<char> rest = buffer.subspan(count);
    const std::span<char> straight = goesStraightInto(rest) ? rest : std::span<char>();
    std::size_t size = 0;
    status = receive(straight, size, wait);
    message_.take({straight.data(), size});
    count += static_cast<std::uint32_t>(size);
    if (status == io::VI_ERROR_TMO) answerMayBeLate_ = true;
    if (status < 0) return status;
  } while (!takeBuffered(buffer, count, status));
  return status;
}

/// Where nothing but data of a block can come, and no character ends the read.
bool SocketSession::goesStraightInto(std::span<char> rest) const {
  return !settings().terminatorEnabled && rest.size() <= message_.blockBytesLeft();
}

/// Moves what has been received into the rest of `buffer`; true when that completes the read.
bool SocketSession::takeBuffered(std::span<char> buffer, std::uint32_t& count,
                                 io::ViStatus& status) {
  skipLineFeed();
  std::string_view data(received_.data() + begin_, std::min(end_ - begin_, buffer.size() - count));
  bool terminated = false;
  if (settings().terminatorEnabled) {
    const auto terminator = data.find(settings().terminator);
    terminated = terminator != std::string_view::npos;
    if (terminated) data = data.substr(0, terminator + 1);
  }
  const bool inBlock = message_.insideBlock();
  const MessageEnd::Taken taken = message_.take(data);
  terminated = terminated && taken.length == data.size();
  std::copy_n(data.data(), taken.length, buffer.begin() + count);
  begin_ += taken.length;
  count += static_cast<std::uint32_t>(taken.length);
  if (taken.ended) {
    status = io::VI_SUCCESS;
  } else if (terminated) {
    status = io::VI_SUCCESS_TERM_CHAR;
    if (!inBlock && !message_.insideBlock()) {
      message_.restart();
      lineFeedMayFollow_ = settings().terminator == '\r';
      skipLineFeed();
    }
  } else if (count == buffer.size()) {
    status = io::VI_SUCCESS_MAX_CNT;
  } else {
    return false;
  }
  return true;
}

/// The line feed of a CR LF may come in a later packet than the CR.
void SocketSession::skipLineFeed() {
  if (!lineFeedMayFollow_ || begin_ == end_) return;
  lineFeedMayFollow_ = false;
  if (received_[begin_] == '\n') ++begin_;
}

/// One successful receive into `straight`, of which `size` bytes are then filled; what goes beyond
/// them comes into the empty buffer.
io::ViStatus SocketSession::receive(std::span<char> straight, std::size_t& size, Wait& wait) {
  std::array<iovec, 2> rooms{{{.iov_base = straight.data(), .iov_len = straight.size()},
                              {.iov_base = received_.data(), .iov_len = received_.size()}}};
  msghdr message{};
  message.msg_iov = rooms.data();
  message.msg_iovlen = rooms.size();
  begin_ = end_ = 0;
  while (true) {
    const int flags = wait.receiveFlags();
    const ssize_t count = straight.empty()
                              ? ::recv(socket_.get(), received_.data(), received_.size(), flags)
                              : ::recvmsg(socket_.get(), &message, flags);
    if (count > 0) {
      const auto all = static_cast<std::size_t>(count);
      size = std::min(all, straight.size());
      end_ = all - size;
      wait.received();
      return io::VI_SUCCESS;
    }
    if (count == 0) return io::VI_ERROR_CONN_LOST;
    const bool interrupted = errno == EINTR;
    if (!interrupted && !wouldBlock(errno)) return transferStatus(errno);
    if (!wait.again(socket_.get(), interrupted)) return io::VI_ERROR_TMO;
  }
}

std::string SocketSession::discardUnread() {
  skipLineFeed();
  std::string unread(received_.data() + begin_, end_ - begin_);
  message_.restart();
  begin_ = end_ = 0;
  for (int discarded = 0; discarded < kMostDiscards; ++discarded) {
    const ssize_t size = ::recv(socket_.get(), received_.data(), received_.size(), MSG_DONTWAIT);
    if (size <= 0) break;
    end_ = static_cast<std::size_t>(size);
    skipLineFeed();
    unread.append(received_.data() + begin_, end_ - begin_);
    begin_ = end_ = 0;
  }
  return unread;
}

io::ViStatus SocketSession::write(std::string_view data, std::uint32_t& count) {
  count = 0;
  if (message_.insideMessage() || begin_ < end_ || answerMayBeLate_) (void)discardUnread();
  const Deadline deadline(settings().timeout);
  while (count < data.size()) {
    const ssize_t size = ::send(socket_.get(), data.data() + count, data.size() - count,
                                MSG_NOSIGNAL | MSG_DONTWAIT);
    if (size >= 0) {
      count += static_cast<std::uint32_t>(size);
    } else if (errno == EINTR) {
      continue;
    } else if (!wouldBlock(errno)) {
      return transferStatus(errno);
    } else if (!waitReady(socket_.get(), POLLOUT, deadline)) {
      return io::VI_ERROR_TMO;
    }
  }
  return io::VI_SUCCESS;
}

}  // namespace lumodevice::posix
