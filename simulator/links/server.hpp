#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>

#include "lumodevice/io/clock.hpp"
#include "simulator/descriptor.hpp"
#include "simulator/links/connection.hpp"
#include "simulator/links/served.hpp"

namespace zansim {

/// Puts an instrument, or something like one, behind pseudo-terminals and loopback sockets, all
/// driven by one poll loop. Setting one up throws std::system_error, saying what failed, or
/// std::invalid_argument. Instrument and clock must outlive it. The clock must tell real time. What
/// hosts make it keep is bounded: a host that does not read is not listened to, and no more than 64
/// are served at once.
class Server {
 public:
  Server(Instrument& instrument, lumodevice::io::Clock& clock);
  /// Whatever `serve` makes for each host. The clock must outlive it.
  using Serve = std::function<std::unique_ptr<Served>()>;
  Server(Serve serve, lumodevice::io::Clock& clock);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Listens on 127.0.0.1; port 0 is any free one. Returns the port.
  std::uint16_t listenTcp(std::uint16_t port);

  /// A pseudo-terminal that `link`, a symbolic link made here, leads to; a link that is there
  /// already is replaced, another kind of file is not. With a `baud` other than 0, bytes sent while
  /// the terminal is set to another speed are lost. Returns the terminal's device.
  std::string openTerminal(const std::string& link, std::int32_t baud = 0);

  /// Waits at most `timeout` for something to do and does it.
  void step(std::chrono::milliseconds timeout);

  /// Sockets connected at present.
  [[nodiscard]] std::size_t clients() const;

 private:
  struct Peer;

  void accept();
  void receive(Peer& peer);
  void carryOut(Peer& peer);
  void transmit(Peer& peer);
  void closeWhatIsGone();
  [[nodiscard]] int patience(std::chrono::milliseconds timeout) const;

  Serve serve_;
  /// Nobody is served any more.
  std::function<bool()> gone_;
  lumodevice::io::Clock& clock_;
  Descriptor listener_;
  Duration acceptAgain_ = Duration::min();
  std::list<Peer> peers_;
};

}  // namespace zansim
