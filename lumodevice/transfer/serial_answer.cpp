#include "lumodevice/transfer/serial_answer.hpp"

#include <algorithm>
#include <limits>

#include "lumodevice/transfer/block.hpp"

namespace lumodevice::transfer {

namespace {

// Milliseconds.
constexpr int kPieceWait = 100;
constexpr int kLongestSilence = 1000;
/// Of all reading on: a whole screen takes eight minutes at 4800 baud.
constexpr int kLongestReading = 10 * 60'000;
/// Two of the largest memory files: a device that never stops sending must not be listened to for
/// ever.
constexpr std::size_t kLargestAnswer = std::size_t{2} * std::numeric_limits<std::int16_t>::max();

/// The size of the complete block at the start, its line end included; 0 when there is none.
std::size_t completeSize(std::string_view answer) {
  const BlockProgress block = blockProgress(answer);
  if (block.state != BlockProgress::State::Complete) {
    return 0;
  }
  const std::size_t size = block.headerSize + block.dataSize;
  return answer.size() - withoutLineEnds(answer.substr(size)).size();
}

/// Whether the last block of an answer is yet to be completed.
bool isUnfinished(std::string_view answer) {
  answer = withoutLineEnds(answer);
  while (const std::size_t size = completeSize(answer)) {
    answer.remove_prefix(size);
  }
  return blockProgress(answer).state == BlockProgress::State::Incomplete;
}

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

std::string answerAfter(link::Waits& waits, io::SerialPort& port, double milliseconds) {
  waits.pause(milliseconds);
  std::string answer = port.Input();
  if (isUnfinished(answer)) {
    // What follows a block at once belongs to the answer too: its line end, a further answer.
    readOn(waits, port, [&](std::string_view piece) {
      answer.append(piece);
      return answer.size() < kLargestAnswer && (isUnfinished(answer) || !piece.empty());
    });
  }
  return answer;
}

std::string_view secondAnswer(std::string_view early, std::string_view received) {
  const std::string both = std::string(early).append(received);
  const auto blockAt = [&](std::size_t at) { return at < both.size() && both[at] == '#'; };
  std::size_t start = both.size() - withoutLineEnds(both).size();
  const std::size_t behind = start + completeSize(std::string_view(both).substr(start));
  if (blockAt(behind)) {
    start = behind;
  }
  return start >= early.size() && blockAt(start) ? received.substr(start - early.size()) : received;
}

std::string_view withoutLineEnds(std::string_view answer) {
  return answer.substr(std::min(answer.find_first_not_of("\r\n"), answer.size()));
}

}  // namespace lumodevice::transfer
