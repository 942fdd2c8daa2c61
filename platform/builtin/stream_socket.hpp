#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "lumodevice/io/visa.hpp"
#include "platform/builtin/socket_address.hpp"
#include "platform/deadline.hpp"

namespace lumodevice::platform {

/// A connected TCP socket as the system has it, closed on destruction. Answers go out at once
/// (TCP_NODELAY), and a peer that is gone is found out (SO_KEEPALIVE).
class StreamSocket {
 public:
  /// Wide enough for what each system calls a socket.
  using Number = std::intptr_t;
  static constexpr Number kNone = -1;

  /// Tries all addresses of the host until the deadline. On POSIX systems the wait for a name
  /// server ends with it, too; elsewhere it is the system's own. None on failure, with the reason
  /// in `status`.
  [[nodiscard]] static StreamSocket connect(const SocketAddress& address, const Deadline& deadline,
                                            io::ViStatus& status);

  StreamSocket() = default;
  StreamSocket(StreamSocket&& other) noexcept
      : socket_(std::exchange(other.socket_, kNone)), ownTimeout_(other.ownTimeout_) {}
  StreamSocket& operator=(StreamSocket&& other) noexcept {
    std::swap(socket_, other.socket_);
    std::swap(ownTimeout_, other.ownTimeout_);
    return *this;
  }
  StreamSocket(const StreamSocket&) = delete;
  StreamSocket& operator=(const StreamSocket&) = delete;
  ~StreamSocket();

  explicit operator bool() const noexcept { return socket_ != kNone; }

  /// The wait of one read, which may take several receives: all of them end at one deadline.
  class Wait {
   private:
    friend class StreamSocket;
    Wait(std::uint32_t timeout, bool blocking)
        : deadline_(timeout), immediate_(timeout == 0), blocking_(blocking && !immediate_) {}

    Deadline deadline_;
    bool immediate_;
    /// The next receive waits by itself: a plain exchange then costs no call but the receive.
    bool blocking_;
  };
  /// Milliseconds, or VI_TMO_INFINITE.
  [[nodiscard]] Wait waitOf(std::uint32_t timeout);

  /// One successful receive: first into `first`, what goes beyond it into `second`. `count` is the
  /// number of all bytes.
  [[nodiscard]] io::ViStatus receive(std::span<char> first, std::span<char> second, Wait& wait,
                                     std::size_t& count);
  /// What has arrived already; 0 for nothing.
  [[nodiscard]] std::size_t receiveNow(std::span<char> buffer);
  /// `count` tells how many bytes went out, on a failure too.
  [[nodiscard]] io::ViStatus send(std::string_view data, const Deadline& deadline,
                                  std::uint32_t& count);

 private:
  explicit StreamSocket(Number socket) : socket_(socket) {}

  Number socket_ = kNone;
  /// Milliseconds after which the system itself ends a receive; a new socket waits for ever.
  std::uint32_t ownTimeout_ = io::VI_TMO_INFINITE;
};

}  // namespace lumodevice::platform
