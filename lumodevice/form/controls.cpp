#include "lumodevice/form/controls.hpp"

#include <initializer_list>

namespace lumodevice::form {

Controls::Controls(toolkit::EventLoop& loop) {
  Timer1.joinLoop(loop);
  Timer2.joinLoop(loop);
}

void Controls::setCommand(int setting, Command command) const {
  txtInput(setting).setTag(command.tag());
  for (toolkit::Control* control :
       std::initializer_list<toolkit::Control*>{&txtInput(setting), &cmdSet(setting)}) {
    toolkit::Look look = control->look();
    look.toolTip = command.text();
    control->setLook(look);
  }
}

void Controls::retire() {
  surface_.retire();
  Timer1.leaveLoop();
  Timer2.leaveLoop();
}

}  // namespace lumodevice::form
