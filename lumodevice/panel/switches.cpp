#include "lumodevice/panel/switches.hpp"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/panel/setting_buttons.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::panel {

namespace {

using toolkit::CheckBox;
using toolkit::ComboBox;
using toolkit::Control;

std::optional<std::string> checkBoxValue(Control& control) {
  return std::to_string(dynamic_cast<CheckBox&>(control).value());
}

/// The load's caption tells its state, whether it is sent or not.
std::optional<std::string> loadValue(Control& control) {
  auto& load = dynamic_cast<CheckBox&>(control);
  load.setCaption(load.value() == CheckBox::kTicked ? "CHAN LOAD ON" : "CHAN LOAD OFF");
  return checkBoxValue(load);
}

/// Both combo boxes share this test, so the "FAST" of cmbCVFreq is never sent.
std::optional<std::string> highOrLow(Control& control) {
  const std::string choice(dynamic_cast<ComboBox&>(control).text());
  return choice == "HIGH" || choice == "LOW" ? std::optional(choice) : std::nullopt;
}

/// A switch that sends its prefix and a value while the panel shows a channel; no value, no
/// command.
struct Switch {
  std::string_view control;
  std::optional<std::string> (*value)(Control&);
};
constexpr auto kSwitches = std::to_array<Switch>({{"chkOCP", checkBoxValue},
                                                  {"chkOVP", checkBoxValue},
                                                  {"chkGoNogo", checkBoxValue},
                                                  {"chkVON", checkBoxValue},
                                                  {"chkLoad", loadValue},
                                                  {"cmbCVFreq", highOrLow},
                                                  {"cmbVolRange", highOrLow}});

void onClick(Control& control, const std::function<void()>& handler) {
  if (auto* box = dynamic_cast<CheckBox*>(&control)) {
    toolkit::handle(box->click, handler);
  } else {
    toolkit::handle(dynamic_cast<ComboBox&>(control).click, handler);
  }
}

}  // namespace

Switches::Switches(form::Controls& form, const link::LinkState& state, link::Exchange& exchange,
                   const TaggedCommands& commands)
    : form_(form), state_(state), exchange_(exchange), commands_(commands) {
  for (const Switch& row : kSwitches) {
    auto& control = form_.surface().get<Control>(row.control);
    onClick(control, [this, &row, &control] {
      const auto value = row.value(control);
      if (value && panelLoaded()) {
        exchange_.runCommand(commands_.prefix(control) + *value);
      }
    });
  }
  toolkit::handle(form_.chkUVP.click, [this] { switchUvp(); });
}

bool Switches::panelLoaded() const {
  return state_.connected() &&
         (state_.panelState() == link::kLoadedAutoQuery || state_.panelState() == link::kLoaded);
}

/// Unlike the others, UVP has a level for a state, and looks at the link alone.
void Switches::switchUvp() {
  if (form_.chkUVP.value() == CheckBox::kTicked) {
    form_.cmdSet(kUvpBox).click.raise();
  } else if (state_.connected()) {
    exchange_.runCommand(":CONF:PROT:UVP:LEV MIN");
  }
}

}  // namespace lumodevice::panel
