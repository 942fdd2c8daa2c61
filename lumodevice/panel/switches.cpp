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

/// Ticked or not, or the entry that is chosen.
int stateOf(const Control& control) {
  const auto* const box = dynamic_cast<const CheckBox*>(&control);
  return box != nullptr ? box->value() : dynamic_cast<const ComboBox&>(control).listIndex();
}

void setState(Control& control, int state) {
  if (auto* const box = dynamic_cast<CheckBox*>(&control)) {
    box->setValue(state);
  } else {
    dynamic_cast<ComboBox&>(control).setListIndex(state);
  }
}

}  // namespace

Switches::Switches(form::Controls& form, const link::LinkState& state, link::Exchange& exchange,
                   const TaggedCommands& commands, ChannelPanel& channel)
    : form_(form), state_(state), exchange_(exchange), commands_(commands), channel_(channel) {
  for (std::size_t row = 0; row < kSwitches.size(); ++row) {
    auto& control = form_.surface().get<Control>(kSwitches.at(row).control);
    states_.push_back(stateOf(control));
    onClick(control, [this, row] { click(row); });
  }
  uvp_ = form_.chkUVP.value();
  toolkit::handle(form_.chkUVP.click, [this] { switchUvp(); });
}

void Switches::click(std::size_t row) {
  auto& control = form_.surface().get<Control>(kSwitches.at(row).control);
  const int state = stateOf(control);
  const auto value = kSwitches.at(row).value(control);
  if (goingBack_) {
    return;
  }
  const bool echo = exchange_.gate().takeEcho();
  const bool sends = value && panelLoaded() && !echo;
  if (sends && !exchange_.runCommand(commands_.prefix(control) + *value)) {
    goBack(control, states_.at(row));
  } else {
    states_.at(row) = state;
  }
  if (!echo) {
    showTruth(control);
  }
}

/// Without sending anything, also where a view throws.
void Switches::goBack(Control& control, int state) {
  struct End {
    bool& goingBack;
    ~End() { goingBack = false; }
  } const end{goingBack_};
  goingBack_ = true;
  attempt([&] { setState(control, state); });
}

bool Switches::panelLoaded() const {
  return state_.connected() &&
         (state_.panelState() == link::kLoadedAutoQuery || state_.panelState() == link::kLoaded);
}

/// What an operator has switched while the component observes was not done.
void Switches::showTruth(toolkit::Control& control) {
  if (state_.connected() && exchange_.gate().observing()) {
    channel_.ReadBack(control);
  }
}

/// Unlike the others, UVP has a level for a state, and looks at the link alone.
void Switches::switchUvp() {
  if (goingBack_) {
    return;
  }
  if (exchange_.gate().takeEcho()) {
    uvp_ = form_.chkUVP.value();
    return;
  }
  const std::uint64_t refusals = exchange_.refusals();
  if (form_.chkUVP.value() == CheckBox::kTicked) {
    form_.cmdSet(kUvpBox).click.raise();
  } else if (state_.connected()) {
    exchange_.runCommand(":CONF:PROT:UVP:LEV MIN");
  }
  if (exchange_.refusals() != refusals) {
    goBack(form_.chkUVP, uvp_);
  }
  uvp_ = form_.chkUVP.value();
  showTruth(form_.chkUVP);
}

}  // namespace lumodevice::panel
