#pragma once

#include <cstdint>

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link_state.hpp"

namespace lumodevice::monitor {

/// Asks for voltage, current, power, load state and error in turn, one query a tick of Timer1,
/// while chkAutoQuery is ticked. The answers reach the read-outs through the receive poll.
class AutoQuery {
 public:
  /// Takes over chkAutoQuery and Timer1.
  AutoQuery(form::Controls& form, link::LinkState& state, link::Exchange& exchange);

 private:
  void switched();
  void tick();

  form::Controls& form_;
  link::LinkState& state_;
  link::Exchange& exchange_;
  std::int16_t rotation_ = 0;
};

}  // namespace lumodevice::monitor
