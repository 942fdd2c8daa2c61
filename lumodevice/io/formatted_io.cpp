#include "lumodevice/io/formatted_io.hpp"

#include <algorithm>
#include <utility>

namespace lumodevice::io {

namespace {

constexpr auto kNoInterface = static_cast<int>(0x80004002U);
constexpr auto kNullPointer = static_cast<int>(0x80004003U);
constexpr auto kInvalidArgument = static_cast<int>(0x80070057U);

/// The most that is set aside before the link has delivered anything to justify it.
constexpr std::size_t kLargestReserve = std::size_t{1} << 20;
constexpr std::size_t kFirstBlockPiece = std::size_t{128} << 10;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

[[noreturn]] void refuseBlock(const char* why) {
  throw VisaComFault(static_cast<int>(E_VISA_NSUP_FMT),
                     std::string("the binary block could not be parsed: ") + why);
}

}  // namespace

MessageSessionOverVisa& FormattedIO::session() {
  if (!session_) throw VisaComFault(kNullPointer, "the formatted I/O object has no session");
  return *session_;
}

void FormattedIO::setIO(std::shared_ptr<MessageSession> session) {
  auto own = std::dynamic_pointer_cast<MessageSessionOverVisa>(session);
  if (session && !own) throw VisaComFault(kNoInterface, "the session is not one of this library");
  session_ = std::move(own);
  output_.clear();
  dropUnread();
}

// ---- writing

/// A new message gives up what was left of the last answer: it belongs to another question.
void FormattedIO::beginWrite() {
  session();
  if (output_.empty()) dropUnread();
}

/// A buffer that fills goes out without END.
void FormattedIO::append(std::string_view data) {
  output_.append(data);
  std::string_view full(output_);
  if (full.size() <= outputSize_) return;
  const std::string pending = std::exchange(output_, {});
  full = pending;
  while (full.size() > outputSize_) {
    session().write(full.substr(0, outputSize_), false);
    full.remove_prefix(outputSize_);
  }
  output_ = full;
}

void FormattedIO::WriteString(std::string_view data, bool flushAndEnd) {
  beginWrite();
  append(data);
  if (flushAndEnd) FlushWrite(true);
}

void FormattedIO::WriteIEEEBlock(std::string_view command, std::span<const std::uint8_t> data,
                                 bool flushAndEnd) {
  const std::string length = std::to_string(data.size());
  if (length.size() > 9) refuseBlock("its length has more than nine digits");
  std::string message;
  message.reserve(command.size() + 2 + length.size() + data.size());
  message.append(command).append("#").append(std::to_string(length.size())).append(length);
  message.append(data.begin(), data.end());
  WriteString(message, flushAndEnd);
}

/// The buffer is emptied even when the link fails: a command that did not get out must not be glued
/// to the next one.
void FormattedIO::FlushWrite(bool sendEnd) {
  const std::string message = std::exchange(output_, {});
  if (!message.empty()) session().write(message, sendEnd);
}

void FormattedIO::SetBufferSize(int bufferMask, std::int32_t bytes) {
  constexpr int both = kInputBuffer | kOutputBuffer;
  const bool known = (bufferMask & both) != 0 && (bufferMask & ~both) == 0;
  if (!known || bytes <= 0 || static_cast<std::size_t>(bytes) > kLargestMessage) {
    throw VisaComFault(kInvalidArgument, "no such buffer, or no such size");
  }
  if ((bufferMask & kInputBuffer) != 0) inputSize_ = static_cast<std::size_t>(bytes);
  if ((bufferMask & kOutputBuffer) != 0) outputSize_ = static_cast<std::size_t>(bytes);
}

// ---- reading

Clock::Duration FormattedIO::now() const {
  return clock_ != nullptr ? clock_->now()
                           : Clock::Duration(std::chrono::steady_clock::now().time_since_epoch());
}

void FormattedIO::beginRead(Clock::Duration longest) {
  session();
  skipped_ = 0;
  deadline_ = now() + longest;
}

void FormattedIO::dropUnread() {
  input_.clear();
  if (input_.capacity() > kLargestReserve) input_.shrink_to_fit();
  taken_ = 0;
  ending_ = Ending::Open;
}

/// What may still come of a message of which `arrived` bytes were kept.
std::size_t FormattedIO::room(std::size_t arrived) {
  if (arrived + skipped_ >= kLargestMessage) {
    dropUnread();
    require(VI_ERROR_ALLOC, "reading a message of more than 16 MiB");
  }
  return kLargestMessage - arrived;
}

/// One read of at most `most` bytes onto the end of `bytes`; what arrives before a failure stays
/// there. True when all of them came: only then a larger piece is worth its memory, for a device
/// may as well drip.
template <typename Buffer>
bool FormattedIO::readOnto(Buffer& bytes, std::size_t most) {
  if (now() >= deadline_) require(VI_ERROR_TMO, "reading for so long");
  const std::size_t before = bytes.size();
  bytes.resize(before + most);
  std::uint32_t count = 0;
  char* const place = reinterpret_cast<char*>(bytes.data()) + before;
  const ViStatus status = session().read(std::span(place, most), count);
  bytes.resize(before + count);
  require(status, "reading");
  if (status != VI_SUCCESS_MAX_CNT) {
    ending_ = status == VI_SUCCESS_TERM_CHAR ? Ending::TerminationCharacter : Ending::End;
  } else {
    ending_ = Ending::Open;
  }
  // Only END can come without a byte. A library that reads nothing and calls it a success would be
  // asked again and again.
  if (count == 0 && status != VI_SUCCESS) require(VI_ERROR_IO, "reading");
  return count == most;
}

/// One read onto the end of `input_`; true when all that was asked for came.
bool FormattedIO::fetch(std::size_t most) {
  if (taken_ > 0) {
    input_.erase(0, taken_);
    taken_ = 0;
  }
  return readOnto(input_, std::min(most, room(input_.size())));
}

void FormattedIO::refuseEnd() const {
  if (ending_ == Ending::End) refuseBlock("the message ends inside it");
}

std::string FormattedIO::ReadString() {
  beginRead(kLongestText);
  std::size_t piece = inputSize_;
  while (ending_ == Ending::Open) {
    if (fetch(piece)) piece = std::min(piece * 2, std::max(kLargestReserve, inputSize_));
  }
  std::string message(unread());
  dropUnread();
  return message;
}

/// Asks for exactly what is missing, because a link without END would wait for any byte more than
/// the instrument sends. A termination character inside a block is data and ends nothing.
void FormattedIO::fetchUntilUnread(std::size_t wanted) {
  while (unread().size() < wanted) {
    refuseEnd();
    fetch(wanted - unread().size());
  }
}

/// Drops everything before the next "#", whole messages too, but for an empty one: there may be no
/// end of them.
void FormattedIO::seekBlock() {
  while (true) {
    const auto mark = unread().find('#');
    if (mark != std::string_view::npos) {
      taken_ += mark;
      return;
    }
    skipped_ += unread().size();
    dropUnread();
    fetch(1);
    if (unread().empty()) require(VI_ERROR_IO, "reading");
  }
}

/// Checks the header byte by byte and returns the number of data bytes; `header` becomes its own
/// length.
std::size_t FormattedIO::blockLengthAt(std::size_t& header) {
  fetchUntilUnread(1);
  if (unread()[0] != '#') refuseBlock("it does not start with \"#\"");
  fetchUntilUnread(2);
  const char digits = unread()[1];
  if (!isDigit(digits) || digits == '0')
    refuseBlock("\"#\" is not followed by a digit from 1 to 9");
  header = 2 + static_cast<std::size_t>(digits - '0');
  fetchUntilUnread(header);
  std::size_t length = 0;
  for (const char c : unread().substr(2, header - 2)) {
    if (!isDigit(c)) refuseBlock("its length is not a number");
    length = length * 10 + static_cast<std::size_t>(c - '0');
  }
  return length;
}

/// The data behind the header go straight to their place, in pieces that grow with what the link
/// delivers. After a failure all of the block is unread again.
Bytes FormattedIO::takeBlock(std::size_t header, std::size_t length) {
  const std::string_view there = unread().substr(header, length);
  const std::size_t kept = there.size();
  Bytes data;
  data.reserve(std::min(length, kFirstBlockPiece));
  data.assign(there.begin(), there.end());
  try {
    for (std::size_t piece = kFirstBlockPiece; data.size() < length;) {
      refuseEnd();
      const std::size_t most = std::min({piece, length - data.size(), room(header + data.size())});
      if (readOnto(data, most)) piece = std::min(piece * 2, kLargestReserve);
    }
  } catch (const VisaComFault&) {
    // Of a message that is too long nothing is kept.
    if (!input_.empty()) {
      input_.append(data.begin() + static_cast<std::ptrdiff_t>(kept), data.end());
    }
    throw;
  }
  taken_ += header + kept;
  return data;
}

Bytes FormattedIO::ReadIEEEBlock(bool seekToBlock, bool flushToEnd) {
  beginRead(kLongestBlock);
  if (seekToBlock) seekBlock();
  std::size_t header = 0;
  const std::size_t length = blockLengthAt(header);
  Bytes data = takeBlock(header, length);
  if (flushToEnd) {
    flushMessage();
  } else if (unread().empty() && ending_ != Ending::Open) {
    dropUnread();
  }
  return data;
}

/// Drops the rest of the message. A link without END shows its end by nothing but a line feed, and
/// an instrument that sends none keeps silent: neither a line feed without END nor silence is an
/// error.
void FormattedIO::flushMessage() {
  bool ended = ending_ == Ending::End;
  std::size_t piece = 1;
  while (!ended && unread() != "\n") {
    skipped_ += unread().size();
    dropUnread();
    bool filled = false;
    try {
      filled = fetch(piece);
    } catch (const VisaComFault& fault) {
      dropUnread();
      if (fault.number() == static_cast<int>(E_VISA_TMO)) return;
      throw;
    }
    ended = ending_ != Ending::Open;
    const std::size_t next = filled ? piece * 2 : piece;
    piece = std::clamp(next, inputSize_, std::max(kLargestReserve, inputSize_));
  }
  dropUnread();
}

}  // namespace lumodevice::io
