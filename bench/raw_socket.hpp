#pragma once

#include <arpa/inet.h>
#include <cstdint>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <span>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {

/// The least that an exchange over a loopback socket costs: one send and, for a query, one recv.
class RawSocket {
 public:
  explicit RawSocket(std::uint16_t port) : descriptor_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    (void)connect(descriptor_, reinterpret_cast<sockaddr*>(&address), sizeof address);
    const int on = 1;
    setsockopt(descriptor_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  }
  ~RawSocket() { close(descriptor_); }
  RawSocket(const RawSocket&) = delete;
  RawSocket& operator=(const RawSocket&) = delete;

  /// Receives an answer of a known size.
  void fetch(std::string_view line, std::span<char> answer) const {
    (void)!send(descriptor_, line.data(), line.size(), 0);
    while (!answer.empty()) {
      const ssize_t count = recv(descriptor_, answer.data(), answer.size(), 0);
      if (count <= 0) {
        return;
      }
      answer = answer.subspan(static_cast<std::size_t>(count));
    }
  }

  void exchange(std::string_view line) const {
    char buffer[80];
    (void)!send(descriptor_, line.data(), line.size(), 0);
    if (line.find('?') != std::string_view::npos) {
      (void)!recv(descriptor_, buffer, sizeof buffer, 0);
    }
  }

  /// One line.
  [[nodiscard]] std::string ask(std::string_view line) const {
    (void)!send(descriptor_, line.data(), line.size(), 0);
    std::string answer;
    char piece[256];
    while (!answer.ends_with('\n')) {
      const ssize_t count = recv(descriptor_, piece, sizeof piece, 0);
      if (count <= 0) {
        break;
      }
      answer.append(piece, static_cast<std::size_t>(count));
    }
    return answer;
  }

 private:
  int descriptor_;
};

}  // namespace bench
