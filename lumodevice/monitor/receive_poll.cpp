#include "lumodevice/monitor/receive_poll.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "lumodevice/text/text.hpp"

namespace lumodevice::monitor {

namespace {

constexpr std::int16_t kLongestWait = 10;  // polls
constexpr std::string_view kTerminators = "\r\n";

}  // namespace

ReceivePoll::ReceivePoll(link::Link& link, link::Exchange& exchange)
    : link_(link), exchange_(exchange) {
  link_.form.Timer2.tick.handle([this] { tick(); });
}

void ReceivePoll::tick() {
  attempt([&] { receive(); });
  if (complete()) {
    attempt([&] { deliver(); });
  }
  if (link_.pollCount > kLongestWait) {
    link_.forgetSerialAnswer();
  }
  attempt([&] { updateReadOut(); });
  link_.form.Text4.setText(std::to_string(link_.pollCount));
  link_.processEvents();
}

void ReceivePoll::receive() {
  if (link_.answerPending && link_.MSComm1.InBufferCount() != 0) {
    link_.receiveBuffer += exchange_.SerialReadInput();
    link_.pollCount = text::add16(link_.pollCount, 1);
  }
}

bool ReceivePoll::complete() const {
  return link_.receiveBuffer.find_first_of(kTerminators) != std::string::npos &&
         link_.pollCount <= kLongestWait && link_.answerPending;
}

void ReceivePoll::deliver() {
  std::string_view answer = link_.receiveBuffer;
  const auto last = static_cast<unsigned char>(answer.back());
  if (kTerminators.find(answer.back()) != std::string_view::npos) {
    answer.remove_suffix(1);
  }
  link_.form.txtReturn.setText(answer);
  link_.form.Text3.setText(std::to_string(last));
  link_.forgetSerialAnswer();
  toolkit::TextBox& queued = link_.form.txtSetCmd;
  if (queued.text().empty()) {
    link_.form.Timer2.setEnabled(false);
    return;
  }
  // Taken out of the queue even when the write fails, or it would go out again and again.
  const std::string command = text::Trim(queued.text());
  attempt([&] { exchange_.SerialWriteLine(command); });
  queued.setText("");
}

void ReceivePoll::updateReadOut() {
  form::Form& form = link_.form;
  const std::string answer = form.txtReturn.text();
  // Answers of one character are left out on purpose.
  if (form.chkAutoQuery.value() != toolkit::CheckBox::kTicked || answer.size() <= 1 ||
      link_.answerPending) {
    return;
  }
  const std::string query = text::Trim(form.Text2.text());
  if (query == ":LOAD?") {
    form.chkLoad.setValue(text::toWhole16(text::Val(answer)));
    return;
  }
  const std::pair<std::string_view, toolkit::TextBox*> readOuts[] = {
      {":FETC:VOLT?", &form.txtVoltage(0)},
      {":FETC:CURR?", &form.txtCurrent(0)},
      {":FETC:POW?", &form.txtPower(0)}};
  for (const auto& [name, box] : readOuts) {
    if (query == name) {
      box->setText(answer);
    }
  }
}

}  // namespace lumodevice::monitor
