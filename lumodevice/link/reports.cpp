#include "lumodevice/link/reports.hpp"

#include <utility>

namespace lumodevice::link {

void Reports::fail(FailureKind kind, std::string_view more) {
  failure_.kind = kind;
  failure_.sentence = rowOf(kind).sentence;
  if (!more.empty()) {
    failure_.sentence.append(": ").append(more);
  }
}

/// What was held back has been told already, with the message.
void Reports::fail(const Fault& fault, bool opening) {
  const FailureKind kind = kindOf(fault, opening);
  if (kind != FailureKind::HeldBack || failure_.kind != kind) {
    fail(kind, dynamic_cast<const LinkFault*>(&fault) == nullptr ? fault.what() : "");
  }
}

void Reports::lose() {
  if (leaveLink()) {
    tellLoss();
  }
}

void Reports::tellLoss() {
  unanswered_ = 0;
  if (!std::exchange(lost_, true)) {
    const Failure why = failure_;
    linkLost.raise(why);
  }
}

void Reports::answered() {
  unanswered_ = 0;
  if (std::exchange(lost_, false)) {
    linkRegained.raise();
  }
}

void Reports::unansweredReading() {
  if (++unanswered_ == kMostUnanswered) {
    tellLoss();
  }
}

void Reports::reached(std::string_view identity, std::string_view address) {
  const std::string_view line = identity.substr(0, identity.find_last_not_of("\r\n") + 1);
  regains_ = std::exchange(lost_, false) && line == instrument_.identity;
  unanswered_ = 0;
  begin();
  instrument_ = {std::string(line), std::string(address)};
}

void Reports::connected() {
  if (std::exchange(regains_, false) && !lost_) {
    linkRegained.raise();
  }
}

}  // namespace lumodevice::link
