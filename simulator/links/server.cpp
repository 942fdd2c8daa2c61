#include "simulator/links/server.hpp"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "simulator/links/pseudo_terminal.hpp"
#include "simulator/links/sockets.hpp"

namespace zansim {
namespace {

/// A host whose answers take more memory than that, because it does not read them, is not listened
/// to.
constexpr std::size_t kMostUnsent = 1 << 20;
/// Further ones wait to be accepted.
constexpr std::size_t kMostClients = 64;
/// Until a socket may be accepted again where there was no descriptor for it.
constexpr std::chrono::milliseconds kNoDescriptor{250};

/// One link to an instrument, which all of them share.
class ServedInstrument : public Served {
 public:
  explicit ServedInstrument(Instrument& instrument)
      : connection_(instrument, Connection::Kind::Stream) {}
  void feed(std::string_view bytes, Duration now) override { connection_.feed(bytes, false, now); }
  [[nodiscard]] std::size_t take(std::span<char> buffer, Duration now) override {
    return connection_.take(buffer, now).count;
  }
  [[nodiscard]] std::optional<Duration> nextDue() const override { return connection_.nextDue(); }
  [[nodiscard]] std::size_t held() const override { return connection_.held(); }
  [[nodiscard]] bool isLost() const override { return connection_.isLost(); }

 private:
  Connection connection_;
};

}  // namespace

/// One host: a connected socket or the terminal.
struct Server::Peer {
  Peer(std::unique_ptr<Served> served, Descriptor descriptor)
      : socket(std::move(descriptor)), connection(std::move(served)) {}
  Peer(std::unique_ptr<Served> served, std::unique_ptr<PseudoTerminal> device, std::int32_t baud)
      : terminal(std::move(device)), requiredBaud(baud), connection(std::move(served)) {}

  [[nodiscard]] Descriptor::Number descriptor() const {
    return terminal ? terminal->descriptor() : socket.get();
  }
  [[nodiscard]] bool understands() const {
    return requiredBaud == 0 || terminal->isAtSpeed(requiredBaud);
  }

  Descriptor socket;
  std::unique_ptr<PseudoTerminal> terminal;
  std::int32_t requiredBaud = 0;
  std::unique_ptr<Served> connection;
  /// Whether it is listened to.
  [[nodiscard]] bool hasRoom() const { return unsent.size() + connection->held() < kMostUnsent; }

  std::string received;  ///< what the instrument has not looked at for want of room
  std::string unsent;
  bool closed = false;
};

Server::Server(Instrument& instrument, lumodevice::io::Clock& clock)
    : Server([&instrument] { return std::make_unique<ServedInstrument>(instrument); }, clock) {
  gone_ = [&instrument] { return instrument.faults.linksGone(); };
}

Server::Server(Serve serve, lumodevice::io::Clock& clock)
    : serve_(std::move(serve)), gone_([] { return false; }), clock_(clock) {}

Server::~Server() = default;

std::uint16_t Server::listenTcp(std::uint16_t port) {
  listener_ = sockets::listenOn(port);
  return port;
}

std::string Server::openTerminal(const std::string& link, std::int32_t baud) {
  if (baud != 0 && !isTerminalSpeed(baud)) {
    throw std::invalid_argument(std::to_string(baud) + " is no speed of a terminal; 9600 is one");
  }
  peers_.emplace_back(serve_(), std::make_unique<PseudoTerminal>(link), baud);
  return peers_.back().terminal->device();
}

std::size_t Server::clients() const {
  return static_cast<std::size_t>(std::count_if(
      peers_.begin(), peers_.end(), [](const Peer& peer) { return peer.terminal == nullptr; }));
}

void Server::step(std::chrono::milliseconds timeout) {
  std::vector<sockets::Watched> watched;
  for (const Peer& peer : peers_) {
    watched.push_back({.number = peer.descriptor(),
                       .reading = peer.received.empty() && peer.hasRoom(),
                       .writing = !peer.unsent.empty()});
  }
  const bool accepting = clients() < kMostClients && clock_.now() >= acceptAgain_;
  watched.push_back({.number = accepting ? listener_.get() : Descriptor::kNone, .reading = true});
  sockets::wait(watched, patience(timeout));
  auto ready = watched.cbegin();
  for (Peer& peer : peers_) {
    if (ready->readable) {
      receive(peer);
    } else if (ready->gone) {
      peer.closed = peer.terminal == nullptr;
    }
    carryOut(peer);
    transmit(peer);
    ++ready;
  }
  if (ready->readable) {
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
    if (const auto due = peer.connection->nextDue()) {
      least = std::clamp(*due - now, Duration::zero(), least);
    }
  }
  return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(least).count());
}

void Server::accept() {
  bool exhausted = false;
  Descriptor socket = sockets::acceptFrom(listener_, exhausted);
  if (socket.isOpen()) {
    peers_.emplace_back(serve_(), std::move(socket));
  } else if (exhausted) {
    // The one that waits would wake every poll until a descriptor is free.
    acceptAgain_ = clock_.now() + kNoDescriptor;
  }
}

void Server::receive(Peer& peer) {
  std::array<char, 4096> bytes{};
  std::size_t count = 0;
  const sockets::Transfer transfer = sockets::receive(peer.descriptor(), bytes, count);
  if (transfer == sockets::Transfer::Over) {
    peer.closed = peer.terminal == nullptr;
  } else if (peer.understands()) {
    peer.received.append(bytes.data(), count);
  }
}

/// Byte by byte, for any of them may end a query whose answer fills the room.
void Server::carryOut(Peer& peer) {
  std::size_t taken = 0;
  while (taken < peer.received.size() && peer.hasRoom()) {
    peer.connection->feed(std::string_view(peer.received).substr(taken, 1), clock_.now());
    ++taken;
  }
  peer.received.erase(0, taken);
}

void Server::transmit(Peer& peer) {
  std::array<char, 4096> bytes{};
  while (peer.unsent.size() < kMostUnsent) {
    const std::size_t taken = peer.connection->take(bytes, clock_.now());
    if (taken == 0) {
      break;
    }
    peer.unsent.append(bytes.data(), taken);
  }
  if (peer.unsent.empty()) {
    return;
  }
  std::size_t count = 0;
  const sockets::Transfer transfer = sockets::send(peer.descriptor(), peer.unsent, count);
  peer.unsent.erase(0, count);
  if (transfer == sockets::Transfer::Over) {
    peer.closed = peer.terminal == nullptr;
  }
}

void Server::closeWhatIsGone() {
  if (gone_()) {
    listener_.reset();
  }
  peers_.remove_if([](const Peer& peer) {
    return peer.closed || (peer.connection->isLost() && peer.unsent.empty());
  });
}

}  // namespace zansim
