#include "lumodevice/link/console.hpp"

#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

Console::Console(Link& link, Exchange& exchange, CommandTable& commands)
    : link_(link), exchange_(exchange), commands_(commands) {
  toolkit::handle(link_.form.Text2.keyDown, [this](toolkit::Key key) { press(key); });
  toolkit::handle(link_.form.Command1.click, [this] { askIdentity(); });
}

void Console::press(toolkit::Key key) {
  switch (key) {
    case toolkit::Key::Enter:
      sendByHand();
      break;
    case toolkit::Key::Up:
      link_.form.Text2.setText(commands_.prevCmd());
      break;
    case toolkit::Key::Down:
      link_.form.Text2.setText(commands_.nextCmd());
      break;
  }
}

void Console::sendByHand() {
  if (link_.form.Text2.text().empty() || !link_.connected()) {
    return;
  }
  exchange_.Send();
  link_.processEvents();
  if (link_.isSerial()) {
    link_.waitUnits(1);
  }
}

void Console::askIdentity() {
  if (link_.connected()) {
    exchange_.runCommand("*IDN?");
  } else {
    link_.showBox("Pleace Connect to Deivce first!");
  }
}

}  // namespace lumodevice::link
