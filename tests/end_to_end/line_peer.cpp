#include "tests/end_to_end/line_peer.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace lumodevice::end_to_end {

namespace {

constexpr std::chrono::milliseconds kBreath{5};

bool blocked(ssize_t size) {
  return size < 0 && (errno == EAGAIN || errno == EINTR);
}

}  // namespace

bool LineEnd::step(std::chrono::milliseconds timeout, const Answerer& answer) {
  const int events = unsent_.empty() ? POLLIN : POLLIN | POLLOUT;
  pollfd poll{stream_.get(), static_cast<short>(events), 0};
  if (::poll(&poll, 1, static_cast<int>(timeout.count())) <= 0) {
    return true;
  }
  if ((poll.revents & (POLLIN | POLLHUP)) != 0) {
    std::array<char, 4096> bytes{};
    const ssize_t size = ::read(stream_.get(), bytes.data(), bytes.size());
    if (size <= 0 && !blocked(size)) {
      return false;
    }
    if (size > 0) {
      take({bytes.data(), static_cast<std::size_t>(size)}, answer);
    }
  }
  if (!unsent_.empty()) {
    const ssize_t size = ::write(stream_.get(), unsent_.data(), unsent_.size());
    if (size <= 0 && !blocked(size)) {
      return false;
    }
    unsent_.erase(0, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  }
  return true;
}

void LineEnd::take(std::string_view bytes, const Answerer& answer) {
  for (const char byte : bytes) {
    if (byte != '\n' && byte != '\r') {
      line_ += byte;
    } else if (!line_.empty()) {
      unsent_ += answer(std::exchange(line_, {}));
    }
  }
}

LineServer::LineServer(Answerer answer)
    : answer_(std::move(answer)),
      listener_(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener_.get(), generic, length) != 0 || ::listen(listener_.get(), 4) != 0 ||
      ::getsockname(listener_.get(), generic, &length) != 0) {
    throw std::runtime_error("cannot listen on the loopback");
  }
  resource_ = "TCPIP0::127.0.0.1::" + std::to_string(ntohs(address.sin_port)) + "::SOCKET";
  thread_ = std::thread([this] { serve(); });
}

LineServer::~LineServer() {
  stop_ = true;
  thread_.join();
}

void LineServer::serve() {
  while (!stop_) {
    pollfd poll{listener_.get(), POLLIN, 0};
    if (::poll(&poll, 1, static_cast<int>(kBreath.count())) <= 0) {
      continue;
    }
    LineEnd end(zansim::Descriptor(
        ::accept4(listener_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)));
    while (!stop_ && end.step(kBreath, answer_)) {
    }
  }
}

Answerer loadWithSlots(std::string slots) {
  return [slots = std::move(slots)](std::string_view line) -> std::string {
    if (line == "*IDN?") {
      return "LUMO,ZAN-1,1,1.2.3\n";
    }
    if (line == "*RDT?") {
      return slots + '\n';
    }
    return line.find('?') == std::string_view::npos ? "" : "1\n";
  };
}

}  // namespace lumodevice::end_to_end
