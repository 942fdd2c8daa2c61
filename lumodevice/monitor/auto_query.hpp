#pragma once

#include <cstdint>
#include <string>

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/monitor/rotation.hpp"
#include "lumodevice/toolkit/observers.hpp"

namespace lumodevice::monitor {

/// Asks for voltage, current, power, load state and error in turn, one query a tick of Timer1,
/// while chkAutoQuery is ticked. The answers reach the read-outs through the receive poll.
class AutoQuery {
 public:
  /// Takes over chkAutoQuery and Timer1.
  AutoQuery(form::Controls& form, link::LinkState& state, link::Exchange& exchange);

  /// Told in turn of each answer, after the read-out shows it.
  toolkit::Observers<const RotationEntry&, const std::string&> readings;

 private:
  void switched();
  void tick();
  void goOn();

  form::Controls& form_;
  link::LinkState& state_;
  link::Exchange& exchange_;
  std::int16_t rotation_ = 0;
};

}  // namespace lumodevice::monitor
