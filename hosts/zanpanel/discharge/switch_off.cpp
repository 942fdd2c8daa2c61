#include "hosts/zanpanel/discharge/switch_off.hpp"

#include "hosts/zanpanel/readings/answers.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"

namespace zanpanel {

namespace toolkit = lumodevice::toolkit;

bool switchLoadOff(lumodevice::ZANCtrl& load) {
  constexpr int kAttempts = 3;
  auto& box = load.surface().get<toolkit::CheckBox>("chkLoad");
  if (box.value() == toolkit::CheckBox::kTicked) {
    toolkit::hand::click(box);
  }
  for (int attempt = 0; attempt < kAttempts && load.isConnected(); ++attempt) {
    load.SendCmd(":LOAD?");
    const auto on = loadStateIn(load.ResultStr());
    if (on && !*on) {
      return true;
    }
    load.SendCmd(":LOAD 0");
  }
  return false;
}

}  // namespace zanpanel
