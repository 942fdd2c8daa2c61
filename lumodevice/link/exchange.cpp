#include "lumodevice/link/exchange.hpp"

#include <algorithm>
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
constexpr std::size_t kVisaAnswerSize = 80;
constexpr double kSerialQueryWait = 50;

/// Queries with long answers. They end in a carriage return, and VISA COM waits five units for
/// them.
bool isLongQuery(std::string_view command) {
  return command == ":CHAN? LIST" || command == "*RDT?";
}

bool isQuery(std::string_view command) {
  return text::contains(command, "?");
}

bool isTerminator(char character) {
  return character == kLineFeed || character == kCarriageReturn;
}

}  // namespace

Exchange::Exchange(Link& link) : link_(link) {
  toolkit::handle(link_.form.cmdSendCmd.click, [this] { Send(); });
  toolkit::handle(link_.form.TXT.change, [this] { commandChanged(); });
}

void Exchange::Send() {
  link_.form.txtReturn.setText("");
  link_.processEvents();
  const std::string command = link_.form.Text2.text();
  if (link_.linkName == kGpib) {
    return;
  }
  if (link_.linkName == kSerial) {
    sendOverSerial(command);
  } else if (link_.linkName == kVisa && link_.form.optVisa2.value()) {
    sendOverVisaCom(command);
  } else if (link_.linkName == kVisa) {
    sendOverVisaLibrary(command);
  }
}

void Exchange::sendOverSerial(const std::string& command) {
  attempt([&] { SerialWriteLine(text::Trim(command)); });
  if (isQuery(command)) {
    link_.form.Timer2.setEnabled(true);
    link_.answerPending = true;
    link_.processEvents();
    link_.sleep(kSerialQueryWait);
  } else if (link_.host.log != nullptr) {
    logCommand(command);
  }
}

void Exchange::sendOverVisaCom(const std::string& command) {
  toolkit::TextBox& answer = link_.form.txtReturn;
  const auto read = [&] { attempt([&] { answer.setText(link_.device().ReadString()); }); };
  attempt([&] { link_.session()->setTimeout(link_.chosenTimeout()); });
  attempt([&] { link_.device().WriteString(text::Trim(command) + terminator(), true); });
  if (!isQuery(command)) {
    return;
  }
  link_.waitUnits(isLongQuery(command) ? 5 : 1);
  read();
  const std::string trimmed = text::Trim(answer.text());
  if (trimmed.empty() || (answer.text().front() == kLineFeed && trimmed.size() == 1)) {
    link_.waitUnits(1);
    read();
  }
  if (!answer.text().empty() && isTerminator(answer.text().back())) {
    answer.setText(text::Left(answer.text(), static_cast<std::int64_t>(answer.text().size()) - 1));
  }
}

void Exchange::sendOverVisaLibrary(const std::string& command) {
  std::array<char, kVisaAnswerSize> buffer{};
  std::uint32_t count = 0;
  link_.visaStatus =
      link_.host.visa.viWrite(link_.visaSession, text::Trim(command) + terminator(), count);
  if (!isQuery(command)) {
    return;
  }
  count = 0;
  link_.visaStatus = link_.host.visa.viRead(link_.visaSession, buffer, count);
  if (count > 0) {
    // The last byte is the instrument's terminator and goes, whatever it is.
    const std::size_t received = std::min<std::size_t>(count, buffer.size());
    link_.form.txtReturn.setText(std::string_view(buffer.data(), received - 1));
  }
}

void Exchange::logCommand(const std::string& command) const {
  const io::LocalTime now = link_.host.wallClock.now();
  std::array<char, 64> stamp{};
  (void)std::snprintf(stamp.data(), stamp.size(), "%04d%02d%02d %02d%02d%02d ", now.year, now.month,
                      now.day, now.hour, now.minute, now.second);
  *link_.host.log << stamp.data() << command << ' ' << link_.form.txtReturn.text() << '\n'
                  << std::flush;
}

void Exchange::runCommand(std::string_view command) {
  if (link_.form.TXT.text() == command) {
    commandChanged();
  } else {
    link_.form.TXT.setText(command);
  }
}

std::string Exchange::query(std::string_view command) {
  runCommand(command);
  return link_.form.txtReturn.text();
}

std::optional<std::string> Exchange::ask(std::string_view command) {
  if (!link_.connected()) {
    return std::nullopt;
  }
  std::string answer = query(command);
  return link_.connected() ? std::optional(std::move(answer)) : std::nullopt;
}

void Exchange::SendCmd(std::string_view sVar) {
  const std::string command = text::Trim(sVar);
  if (command.empty()) {
    return;
  }
  runCommand(link_.form.TXT.text() == command ? std::string_view(command) : sVar);
}

std::string Exchange::ErrMessage() {
  return link_.connected() ? query(":SYST:ERR?") : std::string();
}

void Exchange::commandChanged() {
  const std::string command = link_.form.TXT.text();
  link_.form.Text2.setText(command);
  if (!link_.connected() || command.empty()) {
    return;
  }
  link_.form.txtReturn.setText("");
  Send();
  for (const int units : {1, 2, 4}) {
    if (units == 1 || unanswered()) {
      link_.processEvents();
      link_.waitUnits(units);
    }
  }
  if (unanswered()) {
    link_.showBox("Error:Device has not sent back some data yet!");
  }
}

bool Exchange::unanswered() const {
  return isQuery(link_.form.TXT.text()) && link_.form.txtReturn.text().empty();
}

void Exchange::SerialWriteLine(std::string_view text) {
  link_.MSComm1.Output(std::string(text) + terminator());
  link_.answerPending = false;
}

std::string Exchange::SerialReadInput() {
  return link_.MSComm1.Input();
}

char Exchange::terminator() const {
  return isLongQuery(link_.form.Text2.text()) ? kCarriageReturn : kLineFeed;
}

}  // namespace lumodevice::link
