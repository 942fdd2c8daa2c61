#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "lumodevice/link/answer.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/link/transport.hpp"
#include "lumodevice/link/waits.hpp"

namespace lumodevice::link {

/// Exchanges in turn: one at a time has the line, and each gets its own answer or none.
///
/// There is one thread, so an exchange that is begun inside the waits of another one cannot wait
/// for it: it reads the other one's answer to its end (or gives it up) on its behalf, and then
/// runs. The other one finds its answer when it goes on.
///
/// A query that was given up leaves the line out of step: its answer, or the rest of it, may still
/// come. Nothing is sent until it came, or so much time has passed that it never will.
class Turns {
 public:
  using Duration = toolkit::EventLoop::Duration;

  Turns(const Host& host, Waits& waits, const LinkState& state)
      : host_(host), waits_(waits), state_(state) {}

  /// How long after a query its answer may still come, at the longest.
  static constexpr Duration kLongestLateness = std::chrono::milliseconds(3500);

  /// One exchange over an open link. `line` goes out as it is; an answer is waited for `patience`
  /// milliseconds, at least for one read of the link; none is waited for when that is negative. The
  /// answer comes without its line end.
  std::optional<std::string> run(Transport& transport, const std::string& line, double patience);

  /// The same for an answer that is no text: true when it came whole. One that was begun and given
  /// up is read on for before anything else is sent, so it is shared.
  bool run(Transport& transport, const std::string& line, const std::shared_ptr<Answer>& answer,
           const Patience& patience);

  /// The last line that was to be run went out.
  [[nodiscard]] bool wrote() const { return wrote_; }

  /// Nothing follows within the next milliseconds: the instrument is busy with what it was sent.
  void keepDistance(double milliseconds);

  /// Whoever waits for an answer has it, or none.
  void settle();

  /// Makes the line free for what drives it directly: whoever waits for an answer has it, late
  /// answers have come, and nothing is left unread. No event is processed meanwhile.
  void claim(Transport& transport);

  /// An answer to what was asked over the line directly has not come; it may be late.
  void giveUp(const Transport& transport);

  /// An operation that talks to the instrument more than once; the auto query stands back for it.
  class Operation {
   public:
    explicit Operation(Turns& turns) : turns_(turns) { ++turns_.operations_; }
    ~Operation() { --turns_.operations_; }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

   private:
    Turns& turns_;
  };

  /// Why the last run brought no answer, or its line did not go out; None for one that was well.
  [[nodiscard]] FailureKind trouble() const { return trouble_; }

  /// Exchanges run in turn here; where they do not, nobody calls the functions above.
  [[nodiscard]] bool inTurn() const { return host_.exchanges == Exchanges::InTurn; }

  /// An operation, or an exchange, is on its way.
  [[nodiscard]] bool busy() const { return operations_ > 0 || outstanding_ != nullptr; }

  /// The line is in step whatever may still come, for one who can tell the answers apart. True when
  /// a late answer was waited for.
  bool forgetLateAnswer() { return std::exchange(outOfStep_, std::nullopt).has_value(); }

 private:
  /// A query that was given up.
  struct OutOfStep {
    const Transport* transport;
    Duration until;
    /// What had begun; null for a line of text.
    std::shared_ptr<Answer> rest = nullptr;
    /// Of waiting for a rest that goes on coming.
    Duration end = until;
  };

  /// A query whose answer has not been read to its end.
  struct Outstanding {
    Transport& transport;
    Answer& answer;
    std::uint64_t linkChanges;
    Duration sent;
    Duration deadline;
    /// For one that may take its time: each byte puts the deadline off, as far as the end.
    std::shared_ptr<Answer> shared = nullptr;
    Duration silence{0};
    Duration end{0};
    bool done = false;
    bool answered = false;
    FailureKind trouble = FailureKind::NoAnswer;
  };

  [[nodiscard]] Duration now() const { return host_.loop.now(); }
  [[nodiscard]] bool write(Transport& transport, const std::string& line);
  [[nodiscard]] static Duration unseenWait(const Transport& transport, Duration seen);
  void poll(Outstanding& query);
  void await(Outstanding& query);
  void waitOutDistance();
  void comeIntoStep(Transport& transport);
  void dropUnread(Transport& transport);

  const Host& host_;
  Waits& waits_;
  const LinkState& state_;
  Outstanding* outstanding_ = nullptr;
  std::optional<OutOfStep> outOfStep_;
  std::optional<Duration> notBefore_;
  Duration lastByte_ = -kLongestLateness;
  int operations_ = 0;
  bool wrote_ = false;
  FailureKind trouble_ = FailureKind::None;
};

}  // namespace lumodevice::link
