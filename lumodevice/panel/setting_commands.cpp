#include "lumodevice/panel/setting_commands.hpp"

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::panel {

std::string FormatValue(double value) {
  return text::formatValue(value);
}

SettingCommands::SettingCommands(link::Link& link, link::Exchange& exchange,
                                 const link::CommandTable& commands)
    : link_(link), exchange_(exchange), commands_(commands) {
  form::Controls& form = link_.form;
  for (int i = 0; i < form.cmdSet.count(); ++i) {
    toolkit::handle(form.cmdSet(i).click, [this, i] { set(i); });
  }
  const auto onEnter = [this](toolkit::TextBox& field, toolkit::Timer& timer) {
    toolkit::handle(field.keyDown, [this, &field, &timer](toolkit::Key key) {
      if (key == toolkit::Key::Enter) {
        changeInterval(field, timer);
      }
    });
  };
  onEnter(form.Text5, form.Timer1);
  onEnter(form.Text6, form.Timer2);
}

const std::string& SettingCommands::prefix(const toolkit::Control& control) const {
  return commands_.entry(text::toWhole32(text::Val(control.tag()) - 1));
}

std::string SettingCommands::query(const toolkit::Control& control) const {
  return text::Trim(prefix(control)) + "?";
}

void SettingCommands::readBack(toolkit::TextBox& box) {
  if (const auto answer = exchange_.ask(query(box))) {
    box.setText(*answer);
  }
}

void SettingCommands::set(int index) {
  form::Controls& form = link_.form;
  const toolkit::TextBox& box = form.txtInput(index);
  if (text::Trim(box.text()).empty()) {
    link_.showBox("You Should input setting up new value! first");
    return;
  }
  if (!text::isNumericText(box.text())) {
    link_.showBox("Input Value is not a numeric format!");
    return;
  }
  if (link_.connected()) {
    exchange_.runCommand(prefix(box) + box.text());
  }
  if (link_.connected() && index == kUvpBox) {
    attempt([&] {
      const bool on = text::Val(box.text()) != 0;
      form.chkUVP.setValue(on ? toolkit::CheckBox::kTicked : toolkit::CheckBox::kClear);
    });
  }
}

void SettingCommands::changeInterval(toolkit::TextBox& field, toolkit::Timer& timer) {
  bool accepted = false;
  attempt([&] {
    const double typed = text::Val(field.text());
    if (typed > 0) {
      timer.setInterval(text::toWhole32(typed));
      accepted = true;
    }
  });
  if (!accepted) {
    field.setText(std::to_string(timer.interval()));
  }
}

}  // namespace lumodevice::panel
