#include "simulator/links/server.hpp"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>
#include <utility>
#include <vector>

#include "simulator/links/pseudo_terminal.hpp"

namespace zansim {
namespace {

/// A host whose answers take more memory than that, because it does not read them, is not listened
/// to.
constexpr std::size_t kMostUnsent = 1 << 20;
/// Further ones wait to be accepted.
constexpr std::size_t kMostClients = 64;
/// Until a socket may be accepted again where there was no descriptor for it.
constexpr std::chrono::milliseconds kNoDescriptor{250};

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

bool wouldBlock() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace

/// One host: a connected socket or the terminal.
struct Server::Peer {
  Peer(Instrument& instrument, Descriptor descriptor)
      : socket(std::move(descriptor)), connection(instrument, Connection::Kind::Stream) {}
  Peer(Instrument& instrument, std::unique_ptr<PseudoTerminal> device, std::int32_t baud)
      : terminal(std::move(device)),
        requiredBaud(baud),
        connection(instrument, Connection::Kind::Stream) {}

  [[nodiscard]] int descriptor() const { return terminal ? terminal->descriptor() : socket.get(); }
  [[nodiscard]] bool understands() const {
    return requiredBaud == 0 || terminal->isAtSpeed(requiredBaud);
  }

  Descriptor socket;
  std::unique_ptr<PseudoTerminal> terminal;
  std::int32_t requiredBaud = 0;
  Connection connection;
  /// Whether it is listened to.
  [[nodiscard]] bool hasRoom() const { return unsent.size() + connection.held() < kMostUnsent; }

  std::string received;  ///< what the instrument has not looked at for want of room
  std::string unsent;
  bool closed = false;
};

Server::Server(Instrument& instrument, lumodevice::io::Clock& clock)
    : instrument_(instrument), clock_(clock) {}

Server::~Server() = default;

std::uint16_t Server::listenTcp(std::uint16_t port) {
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
  listener_ = std::move(socket);
  return ntohs(address.sin_port);
}

std::string Server::openTerminal(const std::string& link, std::int32_t baud) {
  if (baud != 0 && !isTerminalSpeed(baud)) {
    throw std::invalid_argument(std::to_string(baud) + " is no speed of a terminal; 9600 is one");
  }
  peers_.emplace_back(instrument_, std::make_unique<PseudoTerminal>(link), baud);
  return peers_.back().terminal->device();
}

std::size_t Server::clients() const {
  return static_cast<std::size_t>(std::count_if(
      peers_.begin(), peers_.end(), [](const Peer& peer) { return peer.terminal == nullptr; }));
}

void Server::step(std::chrono::milliseconds timeout) {
  std::vector<pollfd> polls;
  for (const Peer& peer : peers_) {
    const int reading = peer.received.empty() && peer.hasRoom() ? POLLIN : 0;
    const int writing = peer.unsent.empty() ? 0 : POLLOUT;
    polls.push_back({peer.descriptor(), static_cast<short>(reading | writing), 0});
  }
  const bool accepting = clients() < kMostClients && clock_.now() >= acceptAgain_;
  polls.push_back({accepting ? listener_.get() : -1, POLLIN, 0});
  if (::poll(polls.data(), polls.size(), patience(timeout)) < 0 && errno != EINTR) {
    fail("cannot wait for hosts");
  }
  auto ready = polls.cbegin();
  for (Peer& peer : peers_) {
    if ((ready->revents & POLLIN) != 0) {
      receive(peer);
    } else if ((ready->revents & (POLLHUP | POLLERR)) != 0) {
      peer.closed = peer.terminal == nullptr;
    }
    carryOut(peer);
    transmit(peer);
    ++ready;
  }
  if ((ready->revents & POLLIN) != 0) {
    accept();
  }
  closeWhatIsGone();
}

int Server::patience(std::chrono::milliseconds timeout) const {
  Duration least = timeout;
  const Duration now = clock_.now();
  if (acceptAgain_ > now) {
    least = std::min(least, acceptAgain_ - now);
  }
  for (const Peer& peer : peers_) {
    if (const auto due = peer.connection.nextDue()) {
      least = std::clamp(*due - now, Duration::zero(), least);
    }
  }
  return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(least).count());
}

void Server::accept() {
  Descriptor socket(::accept4(listener_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (socket.isOpen()) {
    const int on = 1;
    ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    peers_.emplace_back(instrument_, std::move(socket));
  } else if (!wouldBlock()) {
    // The one that waits would wake every poll until a descriptor is free.
    acceptAgain_ = clock_.now() + kNoDescriptor;
  }
}

void Server::receive(Peer& peer) {
  std::array<char, 4096> bytes{};
  const ssize_t count = ::read(peer.descriptor(), bytes.data(), bytes.size());
  if (count > 0) {
    if (peer.understands()) {
      peer.received.append(bytes.data(), static_cast<std::size_t>(count));
    }
  } else if (count == 0 || !wouldBlock()) {
    peer.closed = peer.terminal == nullptr;
  }
}

/// Byte by byte, for any of them may end a query whose answer fills the room.
void Server::carryOut(Peer& peer) {
  std::size_t taken = 0;
  while (taken < peer.received.size() && peer.hasRoom()) {
    peer.connection.feed(std::string_view(peer.received).substr(taken, 1), false, clock_.now());
    ++taken;
  }
  peer.received.erase(0, taken);
}

void Server::transmit(Peer& peer) {
  std::array<char, 4096> bytes{};
  while (peer.unsent.size() < kMostUnsent) {
    const Connection::Taken taken = peer.connection.take(bytes, clock_.now());
    if (taken.count == 0) {
      break;
    }
    peer.unsent.append(bytes.data(), taken.count);
  }
  if (peer.unsent.empty()) {
    return;
  }
  const ssize_t count =
      peer.terminal
          ? ::write(peer.descriptor(), peer.unsent.data(), peer.unsent.size())
          : ::send(peer.descriptor(), peer.unsent.data(), peer.unsent.size(), MSG_NOSIGNAL);
  if (count >= 0) {
    peer.unsent.erase(0, static_cast<std::size_t>(count));
  } else if (!wouldBlock()) {
    peer.closed = peer.terminal == nullptr;
  }
}

void Server::closeWhatIsGone() {
  if (instrument_.faults.linksGone()) {
    listener_.reset();
  }
  peers_.remove_if([](const Peer& peer) {
    return peer.closed || (peer.connection.isLost() && peer.unsent.empty());
  });
}

}  // namespace zansim
