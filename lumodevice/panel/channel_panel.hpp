#pragma once

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/panel/modes.hpp"
#include "lumodevice/panel/tagged_commands.hpp"

namespace lumodevice::panel {

/// The channel selector: selecting a channel reads all of it back into the panel.
class ChannelPanel {
 public:
  /// Takes over cmbChannel.
  ChannelPanel(form::Controls& form, link::LinkState& state, link::Exchange& exchange,
               const TaggedCommands& commands, Modes& modes);

  /// What an operator can use only with a link: the protections, and the frame of the chosen mode.
  void showConnected() const;

  /// The panel without a link: the first mode, empty read-outs, nothing to be switched.
  void showUnconnected() const;

  /// Voltage range, switches, protections and their levels, in this order. An answer that does not
  /// fit leaves its control as it was. Controls that change raise their events between two queries.
  void SettingsReadBack();

  /// A switch as the instrument has it, for an act that was held back: `control` is one of those of
  /// SettingsReadBack, or cmbCVFreq. Without an answer it does not show what was not done.
  void ReadBack(toolkit::Control& control);

  /// Voltage, current and power, once.
  void ReadingsReadBack();

 private:
  void select();

  form::Controls& form_;
  link::LinkState& state_;
  link::Exchange& exchange_;
  const TaggedCommands& commands_;
  Modes& modes_;
};

}  // namespace lumodevice::panel
