#include "lumodevice/link/turns.hpp"

#include <algorithm>
#include <cmath>

#include "lumodevice/link/link_fault.hpp"

namespace lumodevice::link {

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr Milliseconds kShortestSlice{1};
constexpr Milliseconds kLongestSlice{10};
/// What a read counts whose wait the loop's clock does not show.
constexpr Milliseconds kUnseenWait{100};
/// Of a line that never falls silent.
constexpr Milliseconds kLongestDropping{1000};

Turns::Duration asDuration(Milliseconds time) {
  return std::chrono::duration_cast<Turns::Duration>(time);
}

/// Short at first, so that a quick answer is found at once; long waits need not be that exact.
double sliceAfter(Turns::Duration waited) {
  const Milliseconds slice(std::chrono::duration_cast<Milliseconds>(waited) / 8);
  return std::ceil(std::clamp(slice, kShortestSlice, kLongestSlice).count());
}

std::string_view withoutLineEnd(std::string_view message) {
  if (message.ends_with('\n')) {
    message.remove_suffix(1);
  }
  if (message.ends_with('\r')) {
    message.remove_suffix(1);
  }
  return message;
}

/// The last whole line: what stands in front of it was left on the line by something else.
std::string_view lastLine(std::string_view received) {
  const std::size_t end = received.find_last_of(kLineEnds);
  std::string_view lines = received.substr(0, end);
  while (!lines.empty() && isLineEnd(lines.back())) {
    lines.remove_suffix(1);
  }
  const std::size_t before = lines.find_last_of(kLineEnds);
  return before == std::string_view::npos ? lines : lines.substr(before + 1);
}

/// A line of text over any link.
class TextAnswer : public Answer {
 public:
  explicit TextAnswer(Transport& transport) : transport_(transport) {}
  [[nodiscard]] Reading readOn() override { return transport_.readOn(received_); }
  [[nodiscard]] std::size_t size() const override { return received_.size(); }
  [[nodiscard]] std::string text() const {
    return std::string(transport_.manner().messagesHaveEnds ? withoutLineEnd(received_)
                                                            : lastLine(received_));
  }

 private:
  Transport& transport_;
  std::string received_;
};

}  // namespace

std::optional<std::string> Turns::run(Transport& transport, const std::string& line,
                                      double patience) {
  if (!write(transport, line) || patience < 0) {
    return std::nullopt;
  }
  TextAnswer text(transport);
  const Duration sent = now();
  Outstanding query{.transport = transport,
                    .answer = text,
                    .linkChanges = state_.changes(),
                    .sent = sent,
                    .deadline = sent + asDuration(Milliseconds(patience))};
  await(query);
  return query.answered ? std::optional(text.text()) : std::nullopt;
}

bool Turns::run(Transport& transport, const std::string& line,
                const std::shared_ptr<Answer>& answer, const Patience& patience) {
  if (!write(transport, line)) {
    return false;
  }
  const Duration sent = now();
  Outstanding query{.transport = transport,
                    .answer = *answer,
                    .linkChanges = state_.changes(),
                    .sent = sent,
                    .deadline = sent + asDuration(Milliseconds(patience.firstByte)),
                    .shared = answer,
                    .silence = asDuration(Milliseconds(patience.silence)),
                    .end = sent + asDuration(Milliseconds(patience.whole))};
  await(query);
  return query.answered;
}

bool Turns::write(Transport& transport, const std::string& line) {
  FailureKind trouble = FailureKind::NotConnected;
  try {
    claim(transport);
    trouble = transport.write(line) ? FailureKind::None : transport.trouble();
  } catch (const Fault& fault) {
    trouble = kindOf(fault);
  }
  trouble_ = trouble;
  wrote_ = trouble == FailureKind::None;
  return wrote_;
}

void Turns::keepDistance(double milliseconds) {
  notBefore_ = now() + asDuration(Milliseconds(milliseconds));
}

void Turns::claim(Transport& transport) {
  settle();
  waitOutDistance();
  comeIntoStep(transport);
  dropUnread(transport);
}

void Turns::giveUp(const Transport& transport) {
  outOfStep_ = OutOfStep{&transport, now() + kLongestLateness};
}

/// Waits for the answer with event passes, in which somebody else may read it to its end.
void Turns::await(Outstanding& query) {
  struct End {
    Turns& turns;
    Outstanding& query;
    ~End() {
      if (turns.outstanding_ == &query) {
        turns.outstanding_ = nullptr;
      }
    }
  } const end{*this, query};
  outstanding_ = &query;
  poll(query);
  while (!query.done) {
    waits_.processEvents();
    if (!query.done) {
      waits_.sleep(sliceAfter(now() - query.sent));
      poll(query);
    }
  }
  trouble_ = query.answered ? FailureKind::None : query.trouble;
}

void Turns::poll(Outstanding& query) {
  Reading reading = Reading::Failed;
  const std::size_t before = query.answer.size();
  const Duration start = now();
  if (query.linkChanges == state_.changes()) {
    try {
      reading = query.answer.readOn();
      query.trouble =
          reading == Reading::Failed ? query.transport.trouble() : FailureKind::NoAnswer;
    } catch (const Fault& fault) {
      query.trouble = kindOf(fault);
    }
  }
  const Duration end = now();
  query.deadline -= unseenWait(query.transport, end - start);
  if (query.answer.size() > before) {
    lastByte_ = end;
    if (query.shared) {
      query.deadline = std::min(end + query.silence, query.end);
    }
  }
  query.answered = reading == Reading::Complete;
  query.done = reading != Reading::Waiting || end >= query.deadline;
  const bool lineStays = !query.transport.manner().messagesHaveEnds;
  if (query.linkChanges != state_.changes() && lineStays) {
    // Whoever opens the line again would get this answer.
    outOfStep_ = {&query.transport, query.sent + kLongestLateness};
  }
  if (query.done && reading == Reading::Waiting) {
    const bool begun = query.shared && query.answer.size() > 0;
    const Duration until = (begun ? lastByte_ : query.sent) + kLongestLateness;
    outOfStep_ = {&query.transport, until, query.shared,
                  query.shared ? end + (query.end - query.sent) : until};
  }
}

/// A read that waits in a time of its own, while the loop's clock stands (a VISA library beside a
/// clock that jumps), counts all the same, or it would be repeated for minutes.
Turns::Duration Turns::unseenWait(const Transport& transport, Duration seen) {
  const bool unseen = transport.manner().reads > 0 && seen == Duration(0);
  return unseen ? asDuration(kUnseenWait) : Duration(0);
}

/// Reads the answer that another exchange waits for to its end, on its behalf.
void Turns::settle() {
  if (outstanding_ == nullptr) {
    return;
  }
  Outstanding& query = *outstanding_;
  while (!query.done) {
    waits_.sleep(sliceAfter(now() - query.sent));
    poll(query);
  }
  outstanding_ = nullptr;
}

/// Without event passes, as all that stands between the wish to send and the sending: what is begun
/// later must not overtake it.
void Turns::waitOutDistance() {
  while (notBefore_ && now() < *notBefore_) {
    const auto left = std::chrono::duration_cast<Milliseconds>(*notBefore_ - now());
    waits_.sleep(std::ceil(std::min(left, 2 * kLongestSlice).count()));
  }
  notBefore_.reset();
}

void Turns::comeIntoStep(Transport& transport) {
  TextAnswer line(transport);
  while (outOfStep_ && outOfStep_->transport == &transport) {
    OutOfStep& out = *outOfStep_;
    Answer& late = out.rest ? *out.rest : line;
    const std::size_t before = late.size();
    Reading reading = Reading::Failed;
    const Duration begun = now();
    attempt([&] { reading = late.readOn(); });
    out.until -= unseenWait(transport, now() - begun);
    if (out.rest && late.size() > before) {
      out.until = std::min(now() + kLongestLateness, out.end);
    }
    if (reading != Reading::Waiting || now() >= out.until) {
      outOfStep_.reset();
      lastByte_ = now();
      return;
    }
    waits_.sleep(2 * kLongestSlice.count());
  }
}

/// Until nothing comes any more: a line without message ends may still be delivering.
void Turns::dropUnread(Transport& transport) {
  const auto drop = [&] {
    std::string dropped;
    attempt([&] { dropped = transport.dropUnread(); });
    if (!dropped.empty()) {
      lastByte_ = now();
    }
  };
  drop();
  if (transport.manner().messagesHaveEnds) {
    return;
  }
  const Duration quiet = asDuration(Milliseconds(transport.manner().quietMilliseconds));
  const Duration end = now() + asDuration(kLongestDropping);
  while (true) {
    const Duration left = lastByte_ + quiet - now();
    if (left <= Duration(0) || now() >= end) {
      return;
    }
    waits_.sleep(std::ceil(std::chrono::duration_cast<Milliseconds>(left).count()));
    drop();
  }
}

}  // namespace lumodevice::link
