#include "lumodevice/link/exchange.hpp"

#include <array>
#include <cstdio>
#include <ostream>
#include <utility>

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

namespace {

constexpr char kCarriageReturn = '\r';
constexpr char kLineFeed = '\n';

/// Queries with long answers. They end in a carriage return, and VISA COM waits longer for them.
bool isLongQuery(std::string_view command) {
  return command == ":CHAN? LIST" || command == "*RDT?";
}

bool isQuery(std::string_view command) {
  return text::contains(command, "?");
}

bool isTerminator(char character) {
  return character == kLineFeed || character == kCarriageReturn;
}

/// Nothing, or blanks with a line feed at most: what an instrument leaves behind an answer.
bool isBlank(std::string_view answer) {
  const std::string trimmed = text::Trim(answer);
  return trimmed.empty() || (answer.front() == kLineFeed && trimmed.size() == 1);
}

std::string_view withoutEnd(std::string_view answer, AnswerEnd end) {
  const bool shorten =
      !answer.empty() && (end == AnswerEnd::LastByte || isTerminator(answer.back()));
  return answer.substr(0, answer.size() - (shorten ? 1 : 0));
}

}  // namespace

Exchange::Exchange(const Host& host, form::Controls& form, Waits& waits, const LinkState& state,
                   Links& links)
    : host_(host), form_(form), waits_(waits), state_(state), links_(links) {
  toolkit::handle(form_.cmdSendCmd.click, [this] { Send(); });
  toolkit::handle(form_.TXT.change, [this] { commandChanged(); });
}

void Exchange::Send() {
  form_.txtReturn.setText("");
  waits_.processEvents();
  const std::string command = form_.Text2.text();
  Transport* const transport = links_.carrying(state_, form_);
  if (transport == nullptr) {
    return;
  }
  const Manner& manner = transport->manner();
  attempt([&] { transport->write(line(text::Trim(command))); });
  if (!isQuery(command)) {
    if (manner.logsCommands && host_.log != nullptr) {
      logCommand(command);
    }
    return;
  }
  transport->expectAnswer();
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

void Exchange::logCommand(const std::string& command) const {
  const io::LocalTime now = host_.wallClock.now();
  std::array<char, 64> stamp{};
  (void)std::snprintf(stamp.data(), stamp.size(), "%04d%02d%02d %02d%02d%02d ", now.year, now.month,
                      now.day, now.hour, now.minute, now.second);
  *host_.log << stamp.data() << command << ' ' << form_.txtReturn.text() << '\n' << std::flush;
}

void Exchange::runCommand(std::string_view command) {
  if (form_.TXT.text() == command) {
    commandChanged();
  } else {
    form_.TXT.setText(command);
  }
}

std::string Exchange::query(std::string_view command) {
  runCommand(command);
  return form_.txtReturn.text();
}

std::optional<std::string> Exchange::ask(std::string_view command) {
  if (!state_.connected()) {
    return std::nullopt;
  }
  std::string answer = query(command);
  return state_.connected() ? std::optional(std::move(answer)) : std::nullopt;
}

void Exchange::SendCmd(std::string_view sVar) {
  const std::string command = text::Trim(sVar);
  if (command.empty()) {
    return;
  }
  runCommand(form_.TXT.text() == command ? std::string_view(command) : sVar);
}

std::string Exchange::ErrMessage() {
  return state_.connected() ? query(":SYST:ERR?") : std::string();
}

void Exchange::commandChanged() {
  const std::string command = form_.TXT.text();
  form_.Text2.setText(command);
  if (!state_.connected() || command.empty()) {
    return;
  }
  form_.txtReturn.setText("");
  Send();
  for (const int units : {1, 2, 4}) {
    if (units == 1 || unanswered()) {
      waits_.processEvents();
      waits_.waitUnits(units);
    }
  }
  if (unanswered()) {
    waits_.showBox("Error:Device has not sent back some data yet!");
  }
}

bool Exchange::unanswered() const {
  return isQuery(form_.TXT.text()) && form_.txtReturn.text().empty();
}

void Exchange::SerialWriteLine(std::string_view text) {
  links_.serial.write(line(text));
}

/// The console's command decides how a line ends, whichever line it is.
std::string Exchange::line(std::string_view text) const {
  return std::string(text) + (isLongQuery(form_.Text2.text()) ? kCarriageReturn : kLineFeed);
}

}  // namespace lumodevice::link
