#pragma once

#include <string_view>

#include "lumodevice/toolkit/hand.hpp"

namespace zanctl {

/// Whose hand does what a script asks of the operator: this one acts on the controls themselves, as
/// the terminal does; another face derives one that acts on what it shows of them.
class OperatorHand {
 public:
  OperatorHand() = default;
  virtual ~OperatorHand() = default;
  OperatorHand(const OperatorHand&) = delete;
  OperatorHand& operator=(const OperatorHand&) = delete;

  virtual bool click(lumodevice::toolkit::Control& control) {
    return lumodevice::toolkit::hand::click(control);
  }
  virtual bool type(lumodevice::toolkit::Control& control, std::string_view text) {
    return lumodevice::toolkit::hand::type(control, text);
  }
  virtual bool select(lumodevice::toolkit::Control& control, int index) {
    return lumodevice::toolkit::hand::select(control, index);
  }
  virtual bool press(lumodevice::toolkit::Control& control, lumodevice::toolkit::Key key) {
    return lumodevice::toolkit::hand::press(control, key);
  }
  virtual bool drag(lumodevice::toolkit::ListBox& from, std::string_view text,
                    lumodevice::toolkit::ListBox& onto) {
    return lumodevice::toolkit::hand::drag(from, text, onto);
  }
};

}  // namespace zanctl
