#include "lumodevice/link/visa_com_link.hpp"

#include "lumodevice/io/visa.hpp"
#include "lumodevice/text/text.hpp"

namespace lumodevice::link {

namespace {

constexpr std::int32_t kOpenTimeout = 2000;  // milliseconds

constexpr Manner kManner{.reads = 2,
                         .unitsBeforeRead = 1,
                         .unitsBeforeLongRead = 5,
                         .unitsBeforeRepeat = 1,
                         .millisecondsAfterQuery = 0,
                         .answerEnd = AnswerEnd::OneTerminator,
                         .logsCommands = false,
                         .messagesHaveEnds = true,
                         .quietMilliseconds = 0};

}  // namespace

io::FormattedIO488& VisaComLink::device() const {
  if (!devZAN_) {
    throw io::VisaComFault(kObjectNotSet, "no VISA COM instrument is open");
  }
  return *devZAN_;
}

std::shared_ptr<io::MessageSession> VisaComLink::session() const {
  auto session = device().IO();
  if (!session) {
    throw io::VisaComFault(kObjectNotSet, "the formatted-I/O object has no session");
  }
  return session;
}

void VisaComLink::send(std::string_view message) {
  gate_.pass(message);
  device().WriteString(message, true);
}

void VisaComLink::sendBlock(std::string_view command, std::span<const std::uint8_t> data) {
  gate_.passBlock(command);
  device().WriteIEEEBlock(command, data, true);
}

void VisaComLink::makeRoom(std::int32_t bytes) const {
  device().FlushWrite(false);
  device().SetBufferSize(io::kInputBuffer | io::kOutputBuffer, bytes);
}

std::int32_t VisaComLink::chosenTimeout() const {
  const std::int32_t chosen = text::toWhole32(text::Val(timeout_.text()));
  if (chosen < 0) {  // -1 would be the infinite one, and hang the panel
    throw text::NumberFault(text::kOverflow, "a time-out is not negative");
  }
  return chosen;
}

void VisaComLink::open(const std::string& descriptor) {
  close();
  manager_ = visaCom_.createResourceManager();
  devZAN_ = visaCom_.createFormattedIO488();
  devZAN_->setIO(
      manager_->Open(descriptor, static_cast<std::int32_t>(io::VI_NO_LOCK), kOpenTimeout, ""));
  descriptor_ = descriptor;
}

void VisaComLink::close() {
  devZAN_.reset();
  manager_.reset();
  descriptor_.clear();
}

const Manner& VisaComLink::manner() const {
  return kManner;
}

bool VisaComLink::write(const std::string& line) {
  attempt([&] { session()->setTimeout(chosenTimeout()); });
  send(line);
  return true;
}

/// What came before a time-out stays in the object and is read with the rest.
Reading VisaComLink::readOn(std::string& received) {
  try {
    received += receive();
  } catch (const io::VisaComFault& fault) {
    if (fault.number() != static_cast<int>(io::E_VISA_TMO)) {
      throw;
    }
    return Reading::Waiting;
  }
  return wholeMessage(received);
}

}  // namespace lumodevice::link
