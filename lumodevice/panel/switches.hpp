#pragma once

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/panel/tagged_commands.hpp"

namespace lumodevice::panel {

/// The check and combo boxes that switch a state of the selected channel at once. All but chkUVP
/// send only while the panel shows a channel; a read-back that changes one of them raises it too.
class Switches {
 public:
  /// Takes over chkOCP, chkOVP, chkGoNogo, chkVON, chkLoad, chkUVP, cmbCVFreq and cmbVolRange.
  Switches(form::Controls& form, const link::LinkState& state, link::Exchange& exchange,
           const TaggedCommands& commands);

 private:
  void switchUvp();
  [[nodiscard]] bool panelLoaded() const;

  form::Controls& form_;
  const link::LinkState& state_;
  link::Exchange& exchange_;
  const TaggedCommands& commands_;
};

}  // namespace lumodevice::panel
