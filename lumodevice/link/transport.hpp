#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/failure.hpp"

namespace lumodevice::link {

/// What a link takes off the end of an answer.
enum class AnswerEnd {
  LastByte,       ///< the last byte, whatever it is
  OneTerminator,  ///< one carriage return or line feed, where the answer ends in one
};

/// How an exchange runs over a link: its steps are the same for all, what differs stands here.
struct Manner {
  /// How often an answer is read for, until one holds more than a line end. 0: it is not read for
  /// at all, but arrives with the receive poll.
  int reads;
  /// Wait units before the first read, and the same for the long answers. 0: the link's own
  /// time-out governs the read.
  double unitsBeforeRead;
  double unitsBeforeLongRead;
  /// Wait units before each further read.
  double unitsBeforeRepeat;
  /// Milliseconds, after an event pass, that a query leaves for an answer that is not read for.
  double millisecondsAfterQuery;
  AnswerEnd answerEnd;
  /// Commands without an answer are written to the host's log.
  bool logsCommands;
  /// The link tells where a message ends; else a line end does.
  bool messagesHaveEnds;
  /// Milliseconds of silence behind which, in turn, a line that does not tell has nothing more to
  /// say.
  double quietMilliseconds;
};

/// Bytes of the longest text answer; what goes on beyond them is none.
inline constexpr std::size_t kLongestAnswer = std::size_t{64} << 10;

/// Each of these bytes ends a line.
inline constexpr std::string_view kLineEnds = "\r\n";

[[nodiscard]] inline bool isLineEnd(char byte) {
  return kLineEnds.find(byte) != std::string_view::npos;
}

/// A line with something on it, and its end.
[[nodiscard]] inline bool hasLine(std::string_view received) {
  const std::size_t begin = received.find_first_not_of(kLineEnds);
  return begin != std::string_view::npos &&
         received.find_first_of(kLineEnds, begin) != std::string_view::npos;
}

/// What has become of reading an answer.
enum class Reading { Waiting, Complete, Failed };

/// A message that is whole: line ends alone are what another one left behind.
[[nodiscard]] inline Reading wholeMessage(std::string_view message) {
  return message.find_first_not_of(kLineEnds) == std::string_view::npos ? Reading::Waiting
                                                                        : Reading::Complete;
}

/// A link on which text commands go out and answers come in. All functions throw a Fault for what
/// the link does not do; they never wait but for the link itself.
class Transport {
 public:
  virtual ~Transport() = default;
  [[nodiscard]] virtual const Manner& manner() const = 0;
  /// Sends `line`, its terminator included. False when the link refused it.
  virtual bool write(const std::string& line) = 0;
  /// An answer is due from now on.
  virtual void expectAnswer() {}
  /// What has been read, with its terminator; nothing when nothing came.
  [[nodiscard]] virtual std::optional<std::string> read() { return std::nullopt; }

  // For exchanges in turn.
  /// Adds what has come of an answer to `received`; waits for the link's own time-out at most. Line
  /// ends alone are no answer but what another one left behind.
  [[nodiscard]] virtual Reading readOn(std::string& received) = 0;
  /// Drops what has come and was not read, and tells what that was.
  virtual std::string dropUnread() = 0;
  /// Why the last write was refused, or the last reading failed, without a Fault.
  [[nodiscard]] virtual FailureKind trouble() const { return FailureKind::BrokenAnswer; }
};

}  // namespace lumodevice::link
