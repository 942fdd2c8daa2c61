#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zansim {

/// Cuts the bytes of a link into program messages. A message ends at CR, LF, END, or with the last
/// byte of a definite-length block ("#" digit count bytes), because hosts send blocks without a
/// terminator; the bytes of a block are never looked at. Messages of blanks alone are passed over.
class Framer {
 public:
  /// Longest text of a message before its block, and longest block, in bytes.
  static constexpr std::size_t kLongestText = 4096;
  static constexpr std::size_t kLongestBlock = 65536;

  enum class Result : std::uint8_t {
    More,      ///< no message is complete yet
    Message,   ///< message() holds a complete one
    Overrun,   ///< too long; dropped up to its end
    BadBlock,  ///< a block header that is none, or a block cut short; dropped up to its end
  };

  Result put(char byte);
  /// The link marked the last byte as the message's end.
  Result end();

  /// True while no byte of a next message has arrived.
  [[nodiscard]] bool idle() const {
    return state_ == State::Text && (complete_ || buffer_.empty());
  }
  /// Valid until the next call of put or end.
  [[nodiscard]] std::string_view message() const { return buffer_; }

 private:
  enum class State : std::uint8_t { Text, Quoted, BlockMark, BlockLength, BlockData, Dropping };

  Result finish();
  Result drop(Result why);
  Result putText(char byte);
  Result putLength(char byte);

  std::string buffer_;
  std::size_t blockLength_ = 0;  ///< data bytes of the block still to come
  int lengthDigits_ = 0;
  char quote_ = '"';
  bool complete_ = false;
  State state_ = State::Text;
};

}  // namespace zansim
