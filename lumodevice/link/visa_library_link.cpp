#include "lumodevice/link/visa_library_link.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "lumodevice/toolkit/observers.hpp"

namespace lumodevice::link {

namespace {

constexpr std::size_t kAnswerSize = 80;
/// Reads of one look for an answer. Each has the session's time-out, and whoever waits has to see
/// between them that a device that drips takes too long.
constexpr int kReadsAtOnce = 16;
/// Milliseconds that opening waits for a lock.
constexpr std::uint32_t kOpenTimeout = 1;

constexpr Manner kManner{.reads = 1,
                         .unitsBeforeRead = 0,
                         .unitsBeforeLongRead = 0,
                         .unitsBeforeRepeat = 0,
                         .millisecondsAfterQuery = 0,
                         .answerEnd = AnswerEnd::LastByte,
                         .logsCommands = false,
                         .messagesHaveEnds = true,
                         .quietMilliseconds = 0};

}  // namespace

bool VisaLibraryLink::openManager() {
  status_ = visa_.viOpenDefaultRM(manager_);
  return status_ >= 0;
}

bool VisaLibraryLink::find(const std::string& expression, std::uint32_t& count,
                           std::string& descriptor) {
  status_ = visa_.viFindRsrc(manager_, expression, findList_, count, descriptor);
  return status_ >= 0;
}

bool VisaLibraryLink::findNext(std::string& descriptor) {
  status_ = visa_.viFindNext(findList_, descriptor);
  return status_ >= 0;
}

bool VisaLibraryLink::open(const std::string& descriptor) {
  status_ = visa_.viOpen(manager_, descriptor, io::VI_EXCLUSIVE_LOCK, kOpenTimeout, session_);
  if (status_ >= 0) {
    descriptor_ = descriptor;
  }
  return status_ >= 0;
}

void VisaLibraryLink::takeOver(VisaLibraryLink& other) {
  status_ = other.status_;
  manager_ = std::exchange(other.manager_, 0);
  session_ = std::exchange(other.session_, 0);
  findList_ = std::exchange(other.findList_, 0);
  descriptor_ = std::exchange(other.descriptor_, {});
}

void VisaLibraryLink::closeSession() {
  descriptor_.clear();
  closeObject(session_);
}

std::string VisaLibraryLink::interfaceName() {
  std::string name;
  status_ = visa_.viGetAttribute(session_, io::VI_ATTR_INTF_INST_NAME, name);
  return name;
}

void VisaLibraryLink::set(std::span<const Attribute> attributes) {
  for (const auto& [attribute, value] : attributes) {
    status_ = visa_.viSetAttribute(session_, attribute, value);
  }
}

std::string VisaLibraryLink::ask(std::string_view query, std::size_t size) {
  std::string answer(size, '\0');
  send(query);
  std::uint32_t count = 0;
  status_ = visa_.viRead(session_, answer, count);
  answer.resize(std::min<std::size_t>(count, size));
  return answer;
}

void VisaLibraryLink::closeSearch() {
  toolkit::EveryStep steps;
  steps.take([this] { closeObject(findList_); });
  steps.take([this] { closeManager(); });
  steps.finish();
}

/// Whatever one call throws, nothing is left open.
void VisaLibraryLink::close() {
  toolkit::EveryStep steps;
  steps.take([this] { closeSession(); });
  steps.take([this] { closeSearch(); });
  steps.finish();
}

void VisaLibraryLink::closeWhatIsOpen() {
  descriptor_.clear();
  toolkit::EveryStep steps;
  for (io::ViObject* const handle : {&session_, &findList_, &manager_}) {
    if (*handle != 0) {
      steps.take([&] { closeObject(*handle); });
    }
  }
  steps.finish();
}

void VisaLibraryLink::closeObject(io::ViObject& handle) {
  status_ = visa_.viClose(std::exchange(handle, 0));
}

const Manner& VisaLibraryLink::manner() const {
  return kManner;
}

void VisaLibraryLink::send(std::string_view message) {
  gate_.pass(message);
  std::uint32_t count = 0;
  status_ = visa_.viWrite(session_, message, count);
}

bool VisaLibraryLink::write(const std::string& line) {
  send(line);
  return status_ >= 0;
}

std::optional<std::string> VisaLibraryLink::read() {
  std::array<char, kAnswerSize> buffer{};
  std::uint32_t count = 0;
  status_ = visa_.viRead(session_, buffer, count);
  if (count == 0) {
    return std::nullopt;
  }
  return std::string(buffer.data(), std::min<std::size_t>(count, buffer.size()));
}

/// Reads on while the message goes on: a buffer that is full is not its end.
Reading VisaLibraryLink::readOn(std::string& received) {
  for (int reads = 0; reads < kReadsAtOnce; ++reads) {
    const std::optional<std::string> piece = read();
    received += piece.value_or("");
    if (status_ == io::VI_ERROR_TMO) {
      return Reading::Waiting;
    }
    if (status_ < 0 || received.size() > kLongestAnswer || !piece) {
      return Reading::Failed;
    }
    if (status_ != io::VI_SUCCESS_MAX_CNT) {
      return wholeMessage(received);
    }
  }
  return Reading::Waiting;
}

std::string VisaLibraryLink::dropUnread() {
  return visa_.discardUnread(session_);
}

FailureKind VisaLibraryLink::trouble() const {
  return status_ < 0 ? kindOf(status_) : Transport::trouble();
}

}  // namespace lumodevice::link
