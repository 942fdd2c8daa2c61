#pragma once

#include "lumodevice/link/command_table.hpp"
#include "lumodevice/link/exchange.hpp"

namespace lumodevice::link {

/// The keys of the console field Text2 and the identity button.
class Console {
 public:
  /// Takes over the keys of Text2 and Command1.
  Console(form::Controls& form, Waits& waits, const LinkState& state, Exchange& exchange,
          CommandTable& commands);

 private:
  void press(toolkit::Key key);
  void sendByHand();
  void askIdentity();

  form::Controls& form_;
  Waits& waits_;
  const LinkState& state_;
  Exchange& exchange_;
  CommandTable& commands_;
};

}  // namespace lumodevice::link
