#include "lumodevice/transfer/block_session.hpp"

#include <string>

#include "lumodevice/text/text.hpp"

namespace lumodevice::transfer {

BlockSession::BlockSession(link::VisaComLink& link, link::Turns& turns, std::string_view resource,
                           End end)
    : link_(link), turns_(turns), end_(end) {
  if (!text::contains(resource, "GPIB")) {
    session_ = link_.session();
  }
}

BlockSession::~BlockSession() {
  if (switched_ && turns_.inTurn()) {
    attempt([this] { restore(); });
  }
}

void BlockSession::setEndMode(int mode) {
  if (end_ == End::Reading) {
    session_->setSerialEndIn(mode);
  } else {
    session_->setSerialEndOut(mode);
  }
}

void BlockSession::begin() {
  if (session_) {
    switched_ = true;
    session_->setTerminationCharacterEnabled(false);
    setEndMode(io::kSerialEndNone);
  }
}

io::Bytes BlockSession::read(std::string_view query) {
  link_.send(text::Trim(query) + '\n');
  begin();
  try {
    return link_.receiveBlock();
  } catch (const io::VisaComFault&) {
    if (turns_.inTurn()) {
      turns_.giveUp(link_);
    }
    throw;
  }
}

void BlockSession::write(std::string_view command, std::span<const std::uint8_t> data) {
  link_.sendBlock(command, data);
}

void BlockSession::restore() {
  if (session_) {
    switched_ = false;
    session_->setTimeout(link_.chosenTimeout());
    setEndMode(io::kSerialEndTerminationCharacter);
  }
}

}  // namespace lumodevice::transfer
