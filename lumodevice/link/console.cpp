#include "lumodevice/link/console.hpp"

#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

Console::Console(form::Controls& form, Waits& waits, const LinkState& state, Exchange& exchange,
                 CommandTable& commands)
    : form_(form), waits_(waits), state_(state), exchange_(exchange), commands_(commands) {
  toolkit::handle(form_.Text2.keyDown, [this](toolkit::Key key) { press(key); });
  toolkit::handle(form_.Command1.click, [this] { askIdentity(); });
}

void Console::press(toolkit::Key key) {
  switch (key) {
    case toolkit::Key::Enter:
      sendByHand();
      break;
    case toolkit::Key::Up:
      form_.Text2.setText(commands_.prevCmd());
      break;
    case toolkit::Key::Down:
      form_.Text2.setText(commands_.nextCmd());
      break;
  }
}

void Console::sendByHand() {
  if (form_.Text2.text().empty() || !state_.connected()) {
    return;
  }
  exchange_.Send();
  if (exchange_.turns().inTurn()) {
    return;
  }
  waits_.processEvents();
  if (state_.linkName() == kSerial) {
    waits_.waitUnits(1);
  }
}

void Console::askIdentity() {
  if (state_.connected()) {
    exchange_.runCommand("*IDN?");
  } else {
    waits_.showBox("Pleace Connect to Deivce first!");
  }
}

}  // namespace lumodevice::link
