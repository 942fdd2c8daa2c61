#pragma once

#include <optional>
#include <string>
#include <string_view>

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
};

/// A link on which text commands go out and answers come in. All functions throw a Fault for what
/// the link does not do; they never wait but for the link itself.
class Transport {
 public:
  virtual ~Transport() = default;
  [[nodiscard]] virtual const Manner& manner() const = 0;
  /// `line` with its terminator.
  virtual void write(const std::string& line) = 0;
  /// An answer is due from now on.
  virtual void expectAnswer() {}
  /// What has been read, with its terminator; nothing when nothing came.
  [[nodiscard]] virtual std::optional<std::string> read() { return std::nullopt; }
};

}  // namespace lumodevice::link
