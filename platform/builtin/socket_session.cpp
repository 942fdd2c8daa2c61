#include "platform/builtin/socket_session.hpp"

#include <algorithm>

namespace lumodevice::platform {

namespace {

constexpr std::uint32_t kLeastConnectTimeout = 2000;
constexpr std::size_t kReceiveSize = std::size_t{8} << 10;
/// What is discarded at most before a write: a peer that never stops sending must not hold it up.
constexpr int kMostDiscards = 2048;

}  // namespace

std::unique_ptr<SocketSession> SocketSession::connect(const SocketAddress& address,
                                                      std::uint32_t openTimeout,
                                                      io::ViStatus& status) {
  const Deadline deadline(std::max(openTimeout, kLeastConnectTimeout));
  StreamSocket socket = StreamSocket::connect(address, deadline, status);
  return socket ? std::make_unique<SocketSession>(std::move(socket), address.board) : nullptr;
}

/// The name holds "ZAN" because an address that the operator typed is the operator's own choice of
/// an instrument, and only interfaces of that name are asked for their identity.
SocketSession::SocketSession(StreamSocket socket, int board)
    : InstrumentSession("TCPIP" + std::to_string(board) + " (ZAN raw socket)"),
      socket_(std::move(socket)),
      received_(kReceiveSize) {}

io::ViStatus SocketSession::read(std::span<char> buffer, std::uint32_t& count) {
  count = 0;
  io::ViStatus status = io::VI_SUCCESS;
  if (takeBuffered(buffer, count, status)) return status;
  StreamSocket::Wait wait = socket_.waitOf(settings().timeout);
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
io::ViStatus SocketSession::receive(std::span<char> straight, std::size_t& size,
                                    StreamSocket::Wait& wait) {
  begin_ = end_ = 0;
  std::size_t all = 0;
  const io::ViStatus status = socket_.receive(straight, received_, wait, all);
  size = std::min(all, straight.size());
  end_ = all - size;
  return status;
}

std::string SocketSession::discardUnread() {
  skipLineFeed();
  std::string unread(received_.data() + begin_, end_ - begin_);
  message_.restart();
  begin_ = end_ = 0;
  for (int discarded = 0; discarded < kMostDiscards; ++discarded) {
    end_ = socket_.receiveNow(received_);
    if (end_ == 0) break;
    skipLineFeed();
    unread.append(received_.data() + begin_, end_ - begin_);
    begin_ = end_ = 0;
  }
  return unread;
}

io::ViStatus SocketSession::write(std::string_view data, std::uint32_t& count) {
  count = 0;
  if (message_.insideMessage() || begin_ < end_ || answerMayBeLate_) (void)discardUnread();
  return socket_.send(data, Deadline(settings().timeout), count);
}

}  // namespace lumodevice::platform
