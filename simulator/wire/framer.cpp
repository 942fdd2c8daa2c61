#include "simulator/wire/framer.hpp"

#include "simulator/wire/characters.hpp"

namespace zansim {
namespace {

bool isTerminator(char byte) {
  return byte == '\r' || byte == '\n';
}

}  // namespace

Framer::Result Framer::put(char byte) {
  if (complete_) {
    complete_ = false;
    buffer_.clear();
  }
  switch (state_) {
    case State::Dropping:
      if (isTerminator(byte)) {
        state_ = State::Text;
      }
      return Result::More;
    case State::BlockMark:
      if (byte >= '1' && byte <= '9') {
        buffer_ += byte;
        lengthDigits_ = byte - '0';
        blockLength_ = 0;
        state_ = State::BlockLength;
        return Result::More;
      }
      state_ = State::Text;
      return putText(byte);
    case State::BlockLength:
      return putLength(byte);
    case State::BlockData:
      buffer_ += byte;
      return --blockLength_ == 0 ? finish() : Result::More;
    case State::Quoted:
    case State::Text:
      break;
  }
  return putText(byte);
}

Framer::Result Framer::end() {
  switch (state_) {
    case State::Dropping:
      state_ = State::Text;
      return Result::More;
    case State::BlockLength:
    case State::BlockData:
      buffer_.clear();
      state_ = State::Text;
      return Result::BadBlock;
    case State::Text:
    case State::Quoted:
    case State::BlockMark:
      break;
  }
  return complete_ || buffer_.empty() ? Result::More : finish();
}

Framer::Result Framer::finish() {
  complete_ = true;
  state_ = State::Text;
  return Result::Message;
}

Framer::Result Framer::drop(Result why) {
  buffer_.clear();
  state_ = State::Dropping;
  return why;
}

Framer::Result Framer::putText(char byte) {
  if (isTerminator(byte)) {
    return buffer_.empty() ? Result::More : finish();
  }
  if (buffer_.empty() && isBlank(byte)) {
    return Result::More;
  }
  if (buffer_.size() >= kLongestText) {
    return drop(Result::Overrun);
  }
  buffer_ += byte;
  if (state_ == State::Quoted) {
    state_ = byte == quote_ ? State::Text : State::Quoted;
  } else if (byte == '"' || byte == '\'') {
    quote_ = byte;
    state_ = State::Quoted;
  } else if (byte == '#') {
    state_ = State::BlockMark;
  }
  return Result::More;
}

Framer::Result Framer::putLength(char byte) {
  if (byte < '0' || byte > '9') {
    const Result result = drop(Result::BadBlock);
    static_cast<void>(isTerminator(byte) ? put(byte) : Result::More);
    return result;
  }
  buffer_ += byte;
  blockLength_ = blockLength_ * 10 + static_cast<std::size_t>(byte - '0');
  if (--lengthDigits_ > 0) {
    return Result::More;
  }
  if (blockLength_ > kLongestBlock) {
    return drop(Result::Overrun);
  }
  state_ = State::BlockData;
  return blockLength_ == 0 ? finish() : Result::More;
}

}  // namespace zansim
