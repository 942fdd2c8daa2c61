#include "lumodevice/panel/switches.hpp"

#include <string>

namespace lumodevice::panel {

Switches::Switches(link::Link& link, link::Exchange& exchange, SettingCommands& settings)
    : link_(link), exchange_(exchange), settings_(settings) {
  form::Form& form = link_.form;
  for (toolkit::CheckBox* box : {&form.chkOCP, &form.chkOVP, &form.chkGoNogo, &form.chkVON}) {
    box->click.handle([this, box] { switchCheckBox(*box); });
  }
  form.chkLoad.click.handle([this] { switchLoad(); });
  form.chkUVP.click.handle([this] { switchUvp(); });
  for (toolkit::ComboBox* combo : {&form.cmbCVFreq, &form.cmbVolRange}) {
    combo->click.handle([this, combo] { switchCombo(*combo); });
  }
}

bool Switches::panelLoaded() const {
  return link_.connected() &&
         (link_.panelState == link::kLoadedAutoQuery || link_.panelState == link::kLoaded);
}

void Switches::switchCheckBox(const toolkit::CheckBox& box) {
  if (panelLoaded()) {
    exchange_.runCommand(settings_.prefix(box) + std::to_string(box.value()));
  }
}

void Switches::switchLoad() {
  toolkit::CheckBox& load = link_.form.chkLoad;
  const bool on = load.value() == toolkit::CheckBox::kTicked;
  load.setCaption(on ? "CHAN LOAD ON" : "CHAN LOAD OFF");
  switchCheckBox(load);
}

void Switches::switchUvp() {
  if (link_.form.chkUVP.value() == toolkit::CheckBox::kTicked) {
    link_.form.cmdSet(kUvpBox).click.raise();
  } else if (link_.connected()) {
    exchange_.runCommand(":CONF:PROT:UVP:LEV MIN");
  }
}

void Switches::switchCombo(const toolkit::ComboBox& combo) {
  // Both boxes share this test, so the "FAST" of cmbCVFreq is never sent.
  const std::string choice(combo.text());
  if ((choice == "HIGH" || choice == "LOW") && panelLoaded()) {
    exchange_.runCommand(settings_.prefix(combo) + choice);
  }
}

}  // namespace lumodevice::panel
