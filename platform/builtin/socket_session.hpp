#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/builtin/instrument_session.hpp"
#include "platform/builtin/message_end.hpp"
#include "platform/builtin/socket_address.hpp"
#include "platform/builtin/stream_socket.hpp"

namespace lumodevice::platform {

/// An instrument on a raw TCP socket. Such a link has no END: a line feed ends a message, and where
/// the peer ends its lines with CR LF and CR is the termination character, the LF counts as part of
/// it.
class SocketSession : public InstrumentSession {
 public:
  /// Connects within max(openTimeout, 2000) milliseconds over all addresses of the host; the wait
  /// for a name server is the system's own. Null on failure, with the reason in `status`.
  [[nodiscard]] static std::unique_ptr<SocketSession> connect(const SocketAddress& address,
                                                              std::uint32_t openTimeout,
                                                              io::ViStatus& status);

  explicit SocketSession(StreamSocket socket, int board = 0);

  [[nodiscard]] io::ViStatus read(std::span<char> buffer, std::uint32_t& count) override;

  /// An answer that was not read to its end is discarded first, with all that waits on the socket:
  /// it must not be taken for the answer to what is written now.
  [[nodiscard]] io::ViStatus write(std::string_view data, std::uint32_t& count) override;

  std::string discardUnread() override;

 private:
  [[nodiscard]] bool takeBuffered(std::span<char> buffer, std::uint32_t& count,
                                  io::ViStatus& status);
  [[nodiscard]] bool goesStraightInto(std::span<char> rest) const;
  [[nodiscard]] io::ViStatus receive(std::span<char> straight, std::size_t& size,
                                     StreamSocket::Wait& wait);
  void skipLineFeed();

  StreamSocket socket_;
  MessageEnd message_;
  std::vector<char> received_;  ///< of fixed size; what was received and not read is at
  std::size_t begin_ = 0;       ///< [begin_, end_)
  std::size_t end_ = 0;
  bool lineFeedMayFollow_ = false;
  /// Once a read has timed out, answers may be one behind for good; from then on every write
  /// discards what waits, which a link without trouble need not pay for.
  bool answerMayBeLate_ = false;
};

}  // namespace lumodevice::platform
