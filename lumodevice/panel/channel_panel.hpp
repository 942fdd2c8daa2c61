#pragma once

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link.hpp"
#include "lumodevice/panel/modes.hpp"
#include "lumodevice/panel/setting_commands.hpp"

namespace lumodevice::panel {

/// The channel selector: selecting a channel reads all of it back into the panel.
class ChannelPanel {
 public:
  /// Takes over cmbChannel.
  ChannelPanel(link::Link& link, link::Exchange& exchange, SettingCommands& settings, Modes& modes);

  /// Voltage range, switches, protections and their levels, in this order. An answer that does not
  /// fit leaves its control as it was. Controls that change raise their events between two queries.
  void SettingsReadBack();

  /// Voltage, current and power, once.
  void ReadingsReadBack();

 private:
  void select();

  link::Link& link_;
  link::Exchange& exchange_;
  SettingCommands& settings_;
  Modes& modes_;
};

}  // namespace lumodevice::panel
