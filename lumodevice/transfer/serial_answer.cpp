#include "lumodevice/transfer/serial_answer.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include "lumodevice/link/transport.hpp"
#include "lumodevice/transfer/block.hpp"

namespace lumodevice::transfer {

namespace {

// Milliseconds.
constexpr int kPieceWait = 100;
/// Two of the largest memory files: a device that never stops sending must not be listened to for
/// ever.
constexpr std::size_t kLargestAnswer = std::size_t{2} * std::numeric_limits<std::int16_t>::max();

}  // namespace

void readOn(link::Waits& waits, io::SerialPort& port,
            const std::function<bool(std::string_view piece)>& takes) {
  int silence = 0;
  for (int waited = 0; silence < kLongestSilence && waited < kLongestReading;
       waited += kPieceWait) {
    waits.pause(kPieceWait);
    const std::string piece = port.Input();
    silence = piece.empty() ? silence + kPieceWait : 0;
    if (!takes(piece)) {
      return;
    }
  }
}

std::string answerAfter(link::Waits& waits, io::SerialPort& port, double milliseconds,
                        std::string early, int blocks) {
  waits.pause(milliseconds);
  std::string answer = std::move(early) + port.Input();
  if (blocksIn(answer).unfinished) {
    // What follows a block at once belongs to the answer too: its line end, a further answer.
    readOn(waits, port, [&](std::string_view piece) {
      answer.append(piece);
      const Blocks now = blocksIn(answer);
      return answer.size() < kLargestAnswer &&
             (now.unfinished || now.complete < blocks || !piece.empty());
    });
  }
  return answer;
}

std::string_view withoutLineEnds(std::string_view answer) {
  return answer.substr(std::min(answer.find_first_not_of(link::kLineEnds), answer.size()));
}

}  // namespace lumodevice::transfer
