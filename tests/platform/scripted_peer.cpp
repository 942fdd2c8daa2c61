#include "tests/platform/scripted_peer.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>

#include "platform/posix/wait_ready.hpp"

namespace lumodevice::posix {

void PeerConnection::send(const std::string& bytes) const {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t size =
        ::send(socket_.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (size <= 0) return;
    sent += static_cast<std::size_t>(size);
  }
}

bool PeerConnection::receive() {
  if (!waitReady(socket_.get(), POLLIN, platform::Deadline(5000))) return false;
  char piece[65536];
  const ssize_t size = ::recv(socket_.get(), piece, sizeof piece, 0);
  if (size <= 0) return false;
  received_.append(piece, static_cast<std::size_t>(size));
  return true;
}

std::string PeerConnection::line() {
  while (received_.find('\n') == std::string::npos) {
    if (!receive()) return {};
  }
  return bytes(received_.find('\n') + 1);
}

std::string PeerConnection::bytes(std::size_t size) {
  while (received_.size() < size && receive()) {
  }
  std::string taken = received_.substr(0, size);
  received_.erase(0, size);
  return taken;
}

void PeerConnection::awaitClose() {
  while (receive()) {
  }
}

ScriptedPeer::ScriptedPeer(std::function<void(PeerConnection&)> script)
    : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener_.get(), plain, size) != 0 || ::listen(listener_.get(), 1) != 0 ||
      ::getsockname(listener_.get(), plain, &size) != 0) {
    throw std::runtime_error("no loopback server");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this, act = std::move(script)] {
    if (!waitReady(listener_.get(), POLLIN, platform::Deadline(5000))) return;
    PeerConnection connection(FileDescriptor(::accept(listener_.get(), nullptr, nullptr)));
    act(connection);
  });
}

/// Where nobody connected, a connection of its own lets the script run to its end.
ScriptedPeer::~ScriptedPeer() {
  {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    ::getsockname(listener_.get(), plain, &size);
    const FileDescriptor last(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    (void)::connect(last.get(), plain, size);
  }
  thread_.join();
}

std::string ScriptedPeer::resource() const {
  return "TCPIP0::127.0.0.1::" + std::to_string(port_) + "::SOCKET";
}

}  // namespace lumodevice::posix
