#pragma once

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link.hpp"
#include "lumodevice/panel/setting_commands.hpp"

namespace lumodevice::panel {

/// The check and combo boxes that switch a state of the selected channel at once. All but chkUVP
/// send only while the panel shows a channel; a read-back that changes one of them raises it too.
class Switches {
 public:
  /// Takes over chkOCP, chkOVP, chkGoNogo, chkVON, chkLoad, chkUVP, cmbCVFreq and cmbVolRange.
  Switches(link::Link& link, link::Exchange& exchange, SettingCommands& settings);

 private:
  void switchUvp();
  [[nodiscard]] bool panelLoaded() const;

  link::Link& link_;
  link::Exchange& exchange_;
  SettingCommands& settings_;
};

}  // namespace lumodevice::panel
