#include "lumodevice/transfer/serial_block.hpp"

#include <string>

#include "lumodevice/transfer/serial_answer.hpp"

namespace lumodevice::transfer {

link::Reading SerialBlock::readOn() {
  const bool seenBefore = assembler_.block().has_value();
  const std::string piece = port_.InBufferCount() != 0 ? port_.Input() : std::string();
  size_ += piece.size();
  (void)assembler_.add(piece);
  const auto block = assembler_.block();
  const bool ended = block && (seenBefore || block->hasLineEnd());
  return ended ? link::Reading::Complete : link::Reading::Waiting;
}

std::shared_ptr<const SerialBlock> askForBlock(link::Turns& turns, link::SerialLink& link,
                                               std::string_view query, double milliseconds) {
  const link::Turns::Operation operation(turns);
  const auto block = std::make_shared<SerialBlock>(link.MSComm1);
  const link::Patience patience{
      .firstByte = milliseconds, .silence = kLongestSilence, .whole = kLongestReading};
  if (!turns.run(link, line(query), block, patience)) {
    if (turns.trouble() != FailureKind::NoAnswer || block->size() == 0) {
      throw link::LinkFault(turns.trouble());
    }
    throw BlockFault("no complete block arrived");
  }
  return block;
}

void claim(link::Turns& turns, link::Transport& link) {
  if (turns.inTurn()) {
    turns.claim(link);
  }
}

InterleavedReading::InterleavedReading(link::Turns& turns, link::SerialLink& link)
    : link_(link), drops_(!turns.busy()), operation_(turns) {
  link_.forgetAnswer();
  if (drops_) {
    (void)link_.dropUnread();
  }
}

/// A query from within the transfer's waits may still be due its answer.
InterleavedReading::~InterleavedReading() {
  if (drops_ && !link_.answerPending()) {
    attempt([this] { (void)link_.dropUnread(); });
    link_.passOverLineEnds();
  }
}

}  // namespace lumodevice::transfer
