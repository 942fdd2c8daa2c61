#include "simulator/links/connection.hpp"

#include <algorithm>
#include <utility>

#include "simulator/commands/command.hpp"

namespace zansim {

void Connection::feed(std::string_view bytes, bool end, Duration now) {
  const auto act = [&](Framer::Result result) {
    switch (result) {
      case Framer::Result::More:
        break;
      case Framer::Result::Message:
        carryOut(now);
        break;
      case Framer::Result::Overrun:
        instrument_.mainframe.status().report(Error::InputOverrun);
        break;
      case Framer::Result::BadBlock:
        instrument_.mainframe.status().report(Error::InvalidBlock);
        break;
    }
  };
  for (const char byte : bytes) {
    const bool wasIdle = framer_.idle();
    const Framer::Result result = framer_.put(byte);
    if (wasIdle && !framer_.idle()) {
      discardUnread();
    }
    act(result);
  }
  if (end) {
    act(framer_.end());
  }
}

void Connection::discardUnread() {
  owes_ = false;
  if (kind_ == Kind::MessageBased && !pieces_.empty()) {
    pieces_.clear();
    held_ = 0;
    lineFree_ = Duration::min();
    instrument_.mainframe.status().report(Error::QueryInterrupted);
  }
}

void Connection::clear() {
  framer_ = Framer();
  pieces_.clear();
  held_ = 0;
  lineFree_ = Duration::min();
  owes_ = false;
}

std::size_t Connection::unread() const {
  std::size_t bytes = 0;
  for (const Piece& piece : pieces_) {
    bytes += piece.bytes.size() - piece.taken;
  }
  return bytes;
}

void Connection::carryOut(Duration now) {
  std::string answer;
  execute(instrument_.mainframe, framer_.message(), now, answer);
  if (instrument_.onMessage) {
    instrument_.onMessage(framer_.message(), answer);
  }
  if (!answer.empty()) {
    const std::string identity = instrument_.mainframe.configuration().identity();
    send(instrument_.faults.deliver(std::move(answer), identity, framer_.message()), now);
  }
}

void Connection::send(const Delivery& delivery, Duration now) {
  owes_ = delivery.bytes.empty() || !delivery.end;
  const std::string_view bytes = delivery.bytes;
  const std::size_t size = delivery.pieceSize == 0 ? bytes.size() : delivery.pieceSize;
  Duration start = now + delivery.delay;
  for (std::size_t at = 0; at < bytes.size(); at += size) {
    Piece piece{std::max(start, lineFree_), std::string(bytes.substr(at, size))};
    piece.end = delivery.end && at + size >= bytes.size();
    lineFree_ = piece.start + byteTime_ * static_cast<Duration::rep>(piece.bytes.size());
    start += delivery.gap;
    keep(std::move(piece));
  }
  if (!delivery.behind.empty()) {
    Piece piece{std::max(start + delivery.behindGap, lineFree_), delivery.behind};
    piece.end = true;
    lineFree_ = piece.start + byteTime_ * static_cast<Duration::rep>(piece.bytes.size());
    keep(std::move(piece));
  }
}

/// Its bytes stay until the last of them is taken.
void Connection::keep(Piece piece) {
  held_ += sizeof piece + piece.bytes.size();
  pieces_.push_back(std::move(piece));
}

Connection::Taken Connection::take(std::span<char> buffer, Duration now, std::optional<char> stop) {
  Taken taken;
  while (taken.count < buffer.size() && !taken.end && !taken.stop) {
    const std::optional<Duration> due = nextDue();
    if (!due || *due > now) {
      break;
    }
    Piece& piece = pieces_.front();
    const char byte = piece.bytes[piece.taken];
    buffer[taken.count] = byte;
    ++taken.count;
    ++piece.taken;
    taken.stop = byte == stop;
    if (piece.taken == piece.bytes.size()) {
      taken.end = piece.end;
      held_ -= sizeof piece + piece.bytes.size();
      pieces_.pop_front();
    }
  }
  return taken;
}

std::string Connection::takeAll(Duration now) {
  constexpr std::size_t kRoom = 512;
  std::string all;
  std::size_t before = 0;
  do {
    before = all.size();
    all.resize(before + kRoom);
    const std::span<char> room(all.data() + before, kRoom);
    all.resize(before + take(room, now).count);
  } while (all.size() > before);
  return all;
}

std::optional<Duration> Connection::nextDue() const {
  if (pieces_.empty()) {
    return std::nullopt;
  }
  const Piece& piece = pieces_.front();
  return piece.start +
         byteTime_ * static_cast<Duration::rep>(byteTime_ > Duration::zero() ? piece.taken + 1 : 0);
}

void Connection::readInVain() {
  if (kind_ == Kind::MessageBased && !owes_ && pieces_.empty()) {
    instrument_.mainframe.status().report(Error::QueryUnterminated);
  }
}

}  // namespace zansim
