#include "lumodevice/monitor/rotation.hpp"

#include "lumodevice/text/text.hpp"

namespace lumodevice::monitor {

void showReading(form::Controls& form, const RotationEntry& entry, const std::string& answer) {
  if (entry.readOut.empty() || answer.size() <= 1) {
    return;
  }
  toolkit::Control* const readOut = form.surface().find(entry.readOut, entry.index);
  if (auto* box = dynamic_cast<toolkit::TextBox*>(readOut)) {
    box->setText(answer);
  } else if (auto* load = dynamic_cast<toolkit::CheckBox*>(readOut)) {
    load->setValue(text::toWhole16(text::Val(answer)));
  }
}

}  // namespace lumodevice::monitor
