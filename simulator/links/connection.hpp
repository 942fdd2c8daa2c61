#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/links/faults.hpp"
#include "simulator/mainframe.hpp"
#include "simulator/wire/framer.hpp"

namespace zansim {

/// A mainframe with the faults of its links, which all connections to it share.
struct Instrument {
  Mainframe mainframe;
  Faults faults;
  /// Called with each program message that arrived and its answer (empty for none).
  std::function<void(std::string_view message, std::string_view answer)> onMessage;
};

/// One link to an instrument: takes the host's bytes and holds the answers' bytes until they are
/// due. It has no clock; whoever feeds it says what time it is.
class Connection {
 public:
  enum class Kind : std::uint8_t {
    Stream,        ///< serial lines and sockets: answers wait one behind the other
    MessageBased,  ///< USB, GPIB: a new message discards an answer not yet read (-410)
  };

  /// `byteTime` is what one byte of an answer takes on a serial line.
  Connection(Instrument& instrument, Kind kind, Duration byteTime = Duration::zero())
      : instrument_(instrument), kind_(kind), byteTime_(byteTime) {}

  /// Bytes that reached the instrument; `end` when the link marked the last one as the message's
  /// end.
  void feed(std::string_view bytes, bool end, Duration now);

  struct Taken {
    std::size_t count = 0;
    bool end = false;   ///< the last byte taken ends the answer
    bool stop = false;  ///< the last byte taken is the stop character
  };
  /// Answer bytes that are due, at most up to an answer's end or the stop character.
  Taken take(std::span<char> buffer, Duration now, std::optional<char> stop = std::nullopt);

  /// All answer bytes that are due, whatever they belong to.
  [[nodiscard]] std::string takeAll(Duration now);

  /// When the next byte is due (perhaps in the past); nothing when none is on its way.
  [[nodiscard]] std::optional<Duration> nextDue() const;

  /// What the answers take that wait to be read, in bytes of memory.
  [[nodiscard]] std::size_t held() const { return held_; }

  /// Bytes of answers that wait to be read, due or not.
  [[nodiscard]] std::size_t unread() const;
  [[nodiscard]] bool hasErrors() const { return instrument_.mainframe.status().count() > 0; }
  /// Forgets the message that has begun and the answers that were not read.
  void clear();

  /// The host read and there was nothing to read: notes -420 where the instrument owes no answer.
  void readInVain();

  /// The link is gone for good and all that came over it was taken.
  [[nodiscard]] bool isLost() const { return pieces_.empty() && instrument_.faults.linksGone(); }

 private:
  struct Piece {
    Duration start;  ///< when its first byte sets out
    std::string bytes;
    std::size_t taken = 0;
    bool end = false;
  };

  void keep(Piece piece);
  void discardUnread();
  void carryOut(Duration now);
  void send(const Delivery& delivery, Duration now);

  Instrument& instrument_;
  Kind kind_;
  Duration byteTime_;
  Framer framer_;
  std::deque<Piece> pieces_;
  std::size_t held_ = 0;
  Duration lineFree_ = Duration::min();
  bool owes_ = false;  ///< the last query's answer fell victim to a fault
};

}  // namespace zansim
