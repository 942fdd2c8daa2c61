#include "lumodevice/monitor/receive_poll.hpp"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "lumodevice/monitor/rotation.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::monitor {

ReceivePoll::ReceivePoll(form::Controls& form, link::Waits& waits, link::SerialLink& serial,
                         link::Exchange& exchange)
    : form_(form), waits_(waits), serial_(serial), exchange_(exchange) {
  toolkit::handle(form_.Timer2.tick, [this] { tick(); });
}

void ReceivePoll::tick() {
  attempt([&] { serial_.receive(); });
  if (serial_.answerComplete()) {
    attempt([&] { deliver(); });
  }
  if (serial_.pollCount() > link::SerialLink::kMostPolls) {
    serial_.forgetAnswer();
  }
  attempt([&] { updateReadOut(); });
  form_.Text4.setText(std::to_string(serial_.pollCount()));
  waits_.processEvents();
}

void ReceivePoll::deliver() {
  std::string_view answer = serial_.receiveBuffer();
  const auto last = static_cast<unsigned char>(answer.back());
  if (link::isLineEnd(answer.back())) {
    answer.remove_suffix(1);
  }
  form_.txtReturn.setText(answer);
  form_.Text3.setText(std::to_string(last));
  serial_.forgetAnswer();
  toolkit::TextBox& queued = form_.txtSetCmd;
  if (queued.text().empty()) {
    form_.Timer2.setEnabled(false);
    return;
  }
  // Taken out of the queue even when the write fails, or it would go out again and again.
  const std::string command = text::Trim(queued.text());
  attempt([&] { exchange_.SerialWriteLine(command); });
  queued.setText("");
}

void ReceivePoll::updateReadOut() {
  // In turn each query of the rotation shows its own answer.
  if (exchange_.turns().inTurn() || form_.chkAutoQuery.value() != toolkit::CheckBox::kTicked ||
      serial_.answerPending()) {
    return;
  }
  const std::string query = text::Trim(form_.Text2.text());
  const auto* const entry = std::ranges::find(kRotation, query, &RotationEntry::query);
  if (entry != kRotation.end()) {
    const link::Gate::Echo echo(exchange_.gate());
    showReading(form_, *entry, form_.txtReturn.text());
  }
}

}  // namespace lumodevice::monitor
