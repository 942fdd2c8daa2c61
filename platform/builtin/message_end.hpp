#pragma once

#include <cstddef>
#include <string_view>

namespace lumodevice::platform {

/// Finds where messages end in a stream that marks their end by nothing but a line feed. A
/// definite-length block at a message's start ("#", one digit n, n digits giving the byte count,
/// the bytes) is binary: line feeds in it end nothing.
class MessageEnd {
 public:
  struct Taken {
    std::size_t length = 0;  ///< bytes that belong to the message
    bool ended = false;      ///< the last of them ends it
  };

  /// Goes on through `data`, at most to the message's end.
  Taken take(std::string_view data);

  /// Whatever comes next starts a message.
  void restart() { state_ = State::Start; }

  /// A message has begun and its end was not seen yet.
  [[nodiscard]] bool insideMessage() const { return state_ != State::Start; }
  [[nodiscard]] bool insideBlock() const { return state_ == State::Data; }
  /// The data bytes that the block still has; 0 outside of one.
  [[nodiscard]] std::size_t blockBytesLeft() const { return insideBlock() ? dataLeft_ : 0; }

 private:
  enum class State { Start, Mark, Length, Data, Text };

  void takeHeader(char c);

  State state_ = State::Start;
  int digitsLeft_ = 0;
  std::size_t dataLeft_ = 0;
};

}  // namespace lumodevice::platform
