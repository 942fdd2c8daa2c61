#include "tests/support/instrument.hpp"

#include <algorithm>
#include <utility>

namespace lumodevice::support {

Reply answer(std::string bytes, std::chrono::milliseconds after) {
  return {{{after, std::move(bytes)}}};
}

Reply silence() {
  return {};
}

void Instrument::on(const std::string& command, std::vector<Reply> replies) {
  replies_[command] = std::move(replies);
}

void Instrument::on(const std::string& command, Reply reply) {
  replies_[command] = {std::move(reply)};
}

Reply Instrument::hear(std::string_view sent) {
  const std::string_view command =
      sent.ends_with('\r') || sent.ends_with('\n') ? sent.substr(0, sent.size() - 1) : sent;
  const auto known = replies_.find(command);
  if (known == replies_.end() || known->second.empty()) {
    return otherwise ? otherwise(sent) : silence();
  }
  std::vector<Reply>& replies = known->second;
  Reply next = replies.front();
  if (replies.size() > 1) {
    replies.erase(replies.begin());
  }
  return next;
}

Instrument zanInstrument() {
  Instrument instrument;
  instrument.on("*IDN?", std::string(kIdentity) + '\n');
  instrument.on("*RDT?", "ZAN2040,0,ZAN6310,0\n");
  instrument.on(":CHAN?", "2\n");
  instrument.otherwise = [](std::string_view sent) {
    return sent.find('?') == std::string_view::npos ? silence() : answer("0\n");
  };
  return instrument;
}

void Inbox::put(const Reply& reply, toolkit::EventLoop::Duration now) {
  for (const Piece& piece : reply.pieces) {
    pieces_.push_back({now + piece.after, piece.bytes});
  }
  further_.insert(further_.end(), reply.further.begin(), reply.further.end());
}

void Inbox::drop() {
  pieces_.clear();
  further_.clear();
}

toolkit::EventLoop::Duration Inbox::complete() const {
  toolkit::EventLoop::Duration last{0};
  for (const Arrival& piece : pieces_) {
    last = std::max(last, piece.at);
  }
  return last;
}

std::string Inbox::take(toolkit::EventLoop::Duration now, std::size_t most) {
  if (pieces_.empty() && !further_.empty()) {
    pieces_.push_back({now, further_.front()});
    further_.erase(further_.begin());
  }
  std::string bytes;
  while (!pieces_.empty() && pieces_.front().at <= now && bytes.size() < most) {
    std::string& piece = pieces_.front().bytes;
    const std::size_t count = std::min(most - bytes.size(), piece.size());
    bytes += piece.substr(0, count);
    piece.erase(0, count);
    if (piece.empty()) {
      pieces_.erase(pieces_.begin());
    }
  }
  return bytes;
}

}  // namespace lumodevice::support
