#include "lumodevice/panel/setting_buttons.hpp"

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::panel {

static_assert(form::kSettings[kUvpBox].command == form::Command(":CONF:PROT:UVP:LEV"));

std::string FormatValue(double value) {
  return text::formatValue(value);
}

SettingButtons::SettingButtons(form::Controls& form, link::Waits& waits,
                               const link::LinkState& state, link::Exchange& exchange,
                               const TaggedCommands& commands)
    : form_(form), waits_(waits), state_(state), exchange_(exchange), commands_(commands) {
  for (int i = 0; i < form_.cmdSet.count(); ++i) {
    toolkit::handle(form_.cmdSet(i).click, [this, i] { set(i); });
  }
}

void SettingButtons::set(int index) {
  toolkit::TextBox& box = form_.txtInput(index);
  if (text::Trim(box.text()).empty()) {
    waits_.showBox("You Should input setting up new value! first");
    return;
  }
  if (!text::isNumericText(box.text())) {
    waits_.showBox("Input Value is not a numeric format!");
    return;
  }
  if (state_.connected()) {
    const bool wentOut = exchange_.runCommand(commands_.prefix(box) + box.text());
    if (exchange_.gate().observing()) {
      commands_.readBack(box);
      return;
    }
    if (!wentOut) {
      return;
    }
  }
  if (state_.connected() && index == kUvpBox) {
    attempt([&] {
      const bool on = text::Val(box.text()) != 0;
      form_.chkUVP.setValue(on ? toolkit::CheckBox::kTicked : toolkit::CheckBox::kClear);
    });
  }
}

}  // namespace lumodevice::panel
