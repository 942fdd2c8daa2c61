#include "lumodevice/link/serial_link.hpp"

#include "lumodevice/text/text.hpp"

namespace lumodevice::link {

namespace {

constexpr Manner kManner{.reads = 0,
                         .unitsBeforeRead = 0,
                         .unitsBeforeLongRead = 0,
                         .unitsBeforeRepeat = 0,
                         .millisecondsAfterQuery = 50,
                         .answerEnd = AnswerEnd::OneTerminator,
                         .logsCommands = true,
                         .messagesHaveEnds = false,
                         .quietMilliseconds = 5};

}  // namespace

const Manner& SerialLink::manner() const {
  return kManner;
}

void SerialLink::close() {
  MSComm1.setPortOpen(false);
  forgetAnswer();
}

bool SerialLink::write(const std::string& line) {
  MSComm1.Output(line);
  answerPending_ = false;
  return true;
}

void SerialLink::expectAnswer() {
  timer_.setEnabled(true);
  answerPending_ = true;
}

Reading SerialLink::readOn(std::string& received) {
  if (MSComm1.InBufferCount() != 0) {
    received += SerialReadInput();
  }
  if (received.size() > kLongestAnswer) {
    return Reading::Failed;
  }
  return hasLine(received) ? Reading::Complete : Reading::Waiting;
}

std::string SerialLink::dropUnread() {
  return MSComm1.InBufferCount() != 0 ? SerialReadInput() : std::string();
}

void SerialLink::receive() {
  if (answerPending_ && MSComm1.InBufferCount() != 0) {
    receiveBuffer_ += SerialReadInput();
    if (passesOverLineEnds_) {
      receiveBuffer_.erase(0, receiveBuffer_.find_first_not_of(kLineEnds));
      passesOverLineEnds_ = receiveBuffer_.empty();
    }
    pollCount_ = text::add16(pollCount_, 1);
  }
}

bool SerialLink::answerComplete() const {
  return receiveBuffer_.find_first_of(kLineEnds) != std::string::npos && pollCount_ <= kMostPolls &&
         answerPending_;
}

void SerialLink::forgetAnswer() {
  answerPending_ = false;
  receiveBuffer_.clear();
  pollCount_ = 0;
}

}  // namespace lumodevice::link
