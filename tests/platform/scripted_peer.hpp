#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <thread>

#include "platform/posix/file_descriptor.hpp"

namespace lumodevice::posix {

/// One accepted connection as the peer sees it. Every wait is bounded.
class PeerConnection {
 public:
  explicit PeerConnection(FileDescriptor socket) : socket_(std::move(socket)) {}
  void send(const std::string& bytes) const;
  /// The next line, line feed included; "" when the other side closes or five seconds pass.
  [[nodiscard]] std::string line();
  /// Exactly `size` bytes, or fewer when the other side closes.
  [[nodiscard]] std::string bytes(std::size_t size);
  /// Returns when the other side has closed (or five seconds have passed).
  void awaitClose();

 private:
  [[nodiscard]] bool receive();
  FileDescriptor socket_;
  std::string received_;
};

/// A server on the loopback that serves one connection with a script, in a thread of its own.
class ScriptedPeer {
 public:
  explicit ScriptedPeer(std::function<void(PeerConnection&)> script);
  ~ScriptedPeer();
  ScriptedPeer(const ScriptedPeer&) = delete;
  ScriptedPeer& operator=(const ScriptedPeer&) = delete;

  [[nodiscard]] std::uint16_t port() const { return port_; }
  /// "TCPIP0::127.0.0.1::PORT::SOCKET"
  [[nodiscard]] std::string resource() const;

 private:
  FileDescriptor listener_;
  std::uint16_t port_ = 0;
  std::thread thread_;
};

}  // namespace lumodevice::posix
