#include "lumodevice/monitor/receive_poll.hpp"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "lumodevice/monitor/rotation.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::monitor {

namespace {

constexpr std::int16_t kLongestWait = 10;  // polls
constexpr std::string_view kTerminators = "\r\n";

}  // namespace

ReceivePoll::ReceivePoll(link::Link& link, link::Exchange& exchange)
    : link_(link), exchange_(exchange) {
  toolkit::handle(link_.form.Timer2.tick, [this] { tick(); });
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
  form::Controls& form = link_.form;
  const std::string& answer = form.txtReturn.text();
  // Answers of one character are left out on purpose.
  if (form.chkAutoQuery.value() != toolkit::CheckBox::kTicked || answer.size() <= 1 ||
      link_.answerPending) {
    return;
  }
  const std::string query = text::Trim(form.Text2.text());
  const auto* const entry = std::ranges::find(kRotation, query, &RotationEntry::query);
  if (entry == kRotation.end() || entry->readOut.empty()) {
    return;
  }
  toolkit::Control* const readOut = form.surface().find(entry->readOut, entry->index);
  if (auto* box = dynamic_cast<toolkit::TextBox*>(readOut)) {
    box->setText(answer);
  } else if (auto* load = dynamic_cast<toolkit::CheckBox*>(readOut)) {
    load->setValue(text::toWhole16(text::Val(answer)));
  }
}

}  // namespace lumodevice::monitor
