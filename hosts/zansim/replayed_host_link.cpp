#include "hosts/zansim/replayed_host_link.hpp"

namespace zansim {

namespace io = lumodevice::io;
namespace recordings = lumodevice::recordings;

namespace {

/// Over a socket there is nothing to fail but the link itself.
bool failed(const recordings::ScriptOfAnswers::Piece& piece) {
  return piece.status < 0 ? piece.status != io::VI_ERROR_TMO : !piece.fault.empty();
}

}  // namespace

ReplayedHostLink::ReplayedHostLink(recordings::ReplayedBench& bench,
                                   recordings::ScriptOfAnswers& script)
    : script_(script), answers_(bench, script) {
  // Whoever reaches this link has opened it: attempts that failed are passed over.
  constexpr int kMostAttempts = 100;
  for (int attempt = 0; attempt < kMostAttempts && answers_.open().link == 0; ++attempt) {
  }
}

void ReplayedHostLink::feed(std::string_view bytes, Duration /*now*/) {
  for (const char byte : bytes) {
    command_ += byte;
    if (byte != '\n' && byte != '\r') {
      continue;
    }
    const bool empty = command_.find_first_not_of("\r\n") == std::string::npos;
    if (!empty && script_.mayBegin(command_)) {
      continue;
    }
    if (!empty) {
      (void)answers_.send(command_);
    }
    command_.clear();
  }
}

std::size_t ReplayedHostLink::take(std::span<char> buffer, Duration now) {
  std::size_t count = 0;
  while (recordings::ReplayedAnswers::Due* const next = answers_.front()) {
    if (next->at > now || count == buffer.size()) {
      break;
    }
    std::string& bytes = next->piece.bytes;
    const std::size_t taken = bytes.copy(buffer.data() + count, buffer.size() - count);
    bytes.erase(0, taken);
    count += taken;
    if (bytes.empty()) {
      lost_ = lost_ || failed(next->piece);
      answers_.pop();
    }
  }
  return count;
}

std::optional<Duration> ReplayedHostLink::nextDue() const {
  const recordings::ReplayedAnswers::Due* const next = answers_.front();
  return next == nullptr ? std::nullopt : std::optional<Duration>(next->at);
}

}  // namespace zansim
