#pragma once

#include <vector>

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/panel/channel_panel.hpp"
#include "lumodevice/panel/tagged_commands.hpp"

namespace lumodevice::panel {

/// The check and combo boxes that switch a state of the selected channel at once. All but chkUVP
/// send only while the panel shows a channel; a read-back that changes one of them raises it too.
/// In turn, a switch whose command did not go out goes back to what it was.
class Switches {
 public:
  /// Takes over chkOCP, chkOVP, chkGoNogo, chkVON, chkLoad, chkUVP, cmbCVFreq and cmbVolRange.
  Switches(form::Controls& form, const link::LinkState& state, link::Exchange& exchange,
           const TaggedCommands& commands, ChannelPanel& channel);

 private:
  void click(std::size_t row);
  void goBack(toolkit::Control& control, int state);
  void switchUvp();
  void showTruth(toolkit::Control& control);
  [[nodiscard]] bool panelLoaded() const;

  form::Controls& form_;
  const link::LinkState& state_;
  link::Exchange& exchange_;
  const TaggedCommands& commands_;
  /// By row: what the switch was set to last, as far as the load knows.
  std::vector<int> states_;
  int uvp_ = 0;  ///< the same of chkUVP
  bool goingBack_ = false;
  ChannelPanel& channel_;
};

}  // namespace lumodevice::panel
