#include "lumodevice/link/exchange.hpp"

#include <array>
#include <cstdio>
#include <numeric>
#include <ostream>
#include <utility>

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

namespace {

constexpr char kCarriageReturn = '\r';
constexpr char kLineFeed = '\n';
/// Wait units of the stages in which an answer is waited for.
constexpr std::array kStages = {1, 2, 4};
constexpr int kStageUnits = std::accumulate(kStages.begin(), kStages.end(), 0);
/// For a command without an answer.
constexpr double kNoPatience = -1;

/// Queries with long answers. They end in a carriage return, and VISA COM waits longer for them.
bool isLongQuery(std::string_view command) {
  return command == ":CHAN? LIST" || command == "*RDT?";
}

bool isQuery(std::string_view command) {
  return text::contains(command, "?");
}

bool choosesChannel(std::string_view command) {
  return text::Trim(command).starts_with(":CHAN ");
}

/// A line as it goes out for a command.
std::string lineOf(std::string_view text, std::string_view command) {
  return std::string(text) + (isLongQuery(command) ? kCarriageReturn : kLineFeed);
}

/// Nothing, or blanks with a line feed at most: what an instrument leaves behind an answer.
bool isBlank(std::string_view answer) {
  const std::string trimmed = text::Trim(answer);
  return trimmed.empty() || (answer.front() == kLineFeed && trimmed.size() == 1);
}

std::string_view withoutEnd(std::string_view answer, AnswerEnd end) {
  const bool shorten = !answer.empty() && (end == AnswerEnd::LastByte || isLineEnd(answer.back()));
  return answer.substr(0, answer.size() - (shorten ? 1 : 0));
}

}  // namespace

Exchange::Exchange(const Host& host, form::Controls& form, Waits& waits, const LinkState& state,
                   Links& links, Turns& turns)
    : host_(host), form_(form), waits_(waits), state_(state), links_(links), turns_(turns) {
  toolkit::handle(form_.cmdSendCmd.click, [this] { Send(); });
  toolkit::handle(form_.TXT.change, [this] { commandChanged(); });
}

void Exchange::Send() {
  if (turns_.inTurn()) {
    if (!heldBack(form_.Text2.text())) {
      takeTurn(form_.Text2.text());
    }
    return;
  }
  form_.txtReturn.setText("");
  waits_.processEvents();
  const std::string command = form_.Text2.text();
  if (heldBack(command)) {
    return;
  }
  Transport* const transport = links_.carrying(state_, form_);
  if (transport == nullptr) {
    links_.reports.fail(FailureKind::NotConnected);
    return;
  }
  const Manner& manner = transport->manner();
  bool written = false;
  links_.reports.transfer([&] {
    if (!transport->write(line(text::Trim(command)))) {
      links_.reports.fail(transport->trouble(), command);
    }
    written = true;
  });
  if (!isQuery(command)) {
    if (manner.logsCommands && host_.log != nullptr) {
      logCommand(command);
    }
    return;
  }
  if (written) {
    transport->expectAnswer();
  }
  if (manner.reads > 0) {
    readAnswer(*transport, command);
  } else {
    waits_.pause(manner.millisecondsAfterQuery);
  }
}

/// Without an answer txtReturn stays as it is.
void Exchange::readAnswer(Transport& transport, const std::string& command) {
  const Manner& manner = transport.manner();
  std::optional<std::string> answer;
  double units = isLongQuery(command) ? manner.unitsBeforeLongRead : manner.unitsBeforeRead;
  for (int read = 0; read < manner.reads && isBlank(answer.value_or("")); ++read) {
    waits_.waitUnits(units);
    units = manner.unitsBeforeRepeat;
    attempt([&] { answer = transport.read(); });
  }
  if (answer) {
    form_.txtReturn.setText(withoutEnd(*answer, manner.answerEnd));
  }
}

/// One exchange, whole. What the fields show in the end is this command with its answer, whatever
/// ran meanwhile.
std::optional<std::string> Exchange::takeTurn(const std::string& command) {
  form_.txtReturn.setText("");
  links_.reports.begin();
  FailureKind trouble = FailureKind::NotConnected;
  ++exchanges_;
  channelChoices_ += choosesChannel(command) ? 1 : 0;
  wentOut_ = false;
  std::optional<std::string> answer;
  if (Transport* const transport = links_.carrying(state_, form_)) {
    const bool query = isQuery(command);
    answer = turns_.run(*transport, lineOf(text::Trim(command), command),
                        query ? patience(*transport, command) : kNoPatience);
    wentOut_ = query || turns_.wrote();
    trouble = turns_.trouble();
    if (!query) {
      turns_.keepDistance(waits_.unit());
    } else if (answer) {
      sendQueued(*transport);
    }
    if (!query && transport->manner().logsCommands && host_.log != nullptr) {
      logCommand(command);
    }
  }
  form_.Text2.setText(command);
  form_.txtReturn.setText(answer.value_or(""));
  report(command, trouble);
  return answer;
}

void Exchange::report(const std::string& command, FailureKind trouble) {
  if (trouble == FailureKind::None) {
    if (isQuery(command)) {
      links_.reports.answered();
    }
    return;
  }
  links_.reports.fail(trouble, command);
  if (trouble == FailureKind::Vanished) {
    links_.reports.lose();
  }
}

/// What will not go out spares its waits, and the box about an answer that nobody asked for.
bool Exchange::heldBack(std::string_view command) {
  links_.reports.begin();
  if (!links_.gate.holdsBack(command)) {
    return false;
  }
  wentOut_ = false;
  form_.txtReturn.setText("");
  return true;
}

/// On the serial link one queued command follows each answer.
void Exchange::sendQueued(Transport& transport) {
  toolkit::TextBox& queued = form_.txtSetCmd;
  if (&transport != &links_.serial || queued.text().empty()) {
    return;
  }
  const std::string command = text::Trim(queued.text());
  queued.setText("");
  (void)turns_.run(transport, lineOf(command, command),
                   isQuery(command) ? patience(transport, command) : kNoPatience);
}

/// All stages of the waits together: milliseconds after which an answer is given up.
double Exchange::patience(const Transport& transport, std::string_view command) const {
  const Manner& manner = transport.manner();
  const double before = isLongQuery(command) ? manner.unitsBeforeLongRead : manner.unitsBeforeRead;
  return manner.millisecondsAfterQuery +
         waits_.unit() * (before + manner.unitsBeforeRepeat + kStageUnits);
}

void Exchange::logCommand(const std::string& command) const {
  const io::LocalTime now = host_.wallClock.now();
  std::array<char, 64> stamp{};
  (void)std::snprintf(stamp.data(), stamp.size(), "%04d%02d%02d %02d%02d%02d ", now.year, now.month,
                      now.day, now.hour, now.minute, now.second);
  const std::string line = stamp.data() + command + ' ' + form_.txtReturn.text() + '\n';
  // Straight into its buffer: all that streams can format would come into every small program that
  // has the component inside, for this one line.
  if (std::streambuf* const log = host_.log->rdbuf(); log != nullptr) {
    (void)log->sputn(line.data(), static_cast<std::streamsize>(line.size()));
    (void)log->pubsync();
  }
}

bool Exchange::runCommand(std::string_view command) {
  wentOut_ = !turns_.inTurn();
  if (form_.TXT.text() == command) {
    commandChanged();
  } else {
    form_.TXT.setText(command);
  }
  refusals_ += wentOut_ ? 0 : 1;
  return wentOut_;
}

std::string Exchange::query(std::string_view command) {
  runCommand(command);
  return form_.txtReturn.text();
}

std::optional<std::string> Exchange::ask(std::string_view command) {
  if (!state_.connected()) {
    return std::nullopt;
  }
  const std::uint64_t choices = channelChoices_;
  std::string answer = query(command);
  // What another channel was chosen under would be shown as that channel's.
  const bool valid = state_.connected() && choices == channelChoices_;
  return valid ? std::optional(std::move(answer)) : std::nullopt;
}

void Exchange::sendAndWait(std::string_view command, double units) {
  form_.Text2.setText(command);
  Send();
  if (!turns_.inTurn()) {
    waits_.processEvents();
    waits_.waitUnits(units);
    waits_.processEvents();
  }
}

std::optional<std::string> Exchange::takeReading(std::string_view command) {
  const std::uint64_t before = exchanges_;
  const std::uint64_t changes = state_.changes();
  auto answer = takeTurn(std::string(command));
  if (!answer) {
    links_.reports.unansweredReading();
  }
  return exchanges_ == before + 1 && changes == state_.changes() ? answer : std::nullopt;
}

void Exchange::SendCmd(std::string_view sVar) {
  const std::string command = text::Trim(sVar);
  if (command.empty()) {
    return;
  }
  runCommand(form_.TXT.text() == command ? std::string_view(command) : sVar);
}

std::string Exchange::ErrMessage() {
  if (!state_.connected()) {
    return {};
  }
  std::string answer = query(":SYST:ERR?");
  // The link, or the component, may have ended in the waits.
  return state_.connected() ? std::move(answer) : std::string();
}

void Exchange::commandChanged() {
  const std::string command = form_.TXT.text();
  form_.Text2.setText(command);
  if (!state_.connected() || command.empty()) {
    if (turns_.inTurn()) {
      form_.txtReturn.setText("");  // the answer of an earlier query is none to this one
    }
    if (!state_.connected()) {
      links_.reports.fail(FailureKind::NotConnected);
    }
    return;
  }
  if (heldBack(command)) {
    return;
  }
  bool answered = false;
  if (turns_.inTurn()) {
    answered = !takeTurn(command).value_or("").empty() || !isQuery(command);
  } else {
    answered = sendInStages();
    report(command, answered ? FailureKind::None : FailureKind::NoAnswer);
  }
  // Where the instrument has gone, the panel shows that.
  const bool gone = turns_.inTurn() && !state_.connected();
  if (!answered && !gone) {
    waits_.showBox(kNoAnswer);
  }
}

/// False when a query has no answer at the end of all stages.
bool Exchange::sendInStages() {
  const auto unanswered = [this] {
    return isQuery(form_.TXT.text()) && form_.txtReturn.text().empty();
  };
  form_.txtReturn.setText("");
  Send();
  for (const int units : kStages) {
    if (units == kStages.front() || unanswered()) {
      waits_.processEvents();
      waits_.waitUnits(units);
    }
  }
  // The answer may have come in the last wait.
  if (unanswered()) {
    waits_.processEvents();
  }
  return !unanswered();
}

void Exchange::SerialWriteLine(std::string_view text) {
  links_.serial.write(line(text));
}

/// The console's command decides how a line ends, whichever line it is.
std::string Exchange::line(std::string_view text) const {
  return lineOf(text, form_.Text2.text());
}

}  // namespace lumodevice::link
