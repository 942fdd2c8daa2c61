#pragma once

#include <cstdint>

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link.hpp"

namespace lumodevice::monitor {

/// Asks for voltage, current, power, load state and error in turn, one query a tick of Timer1,
/// while chkAutoQuery is ticked. The answers reach the read-outs through the receive poll.
class AutoQuery {
 public:
  /// Takes over chkAutoQuery and Timer1.
  AutoQuery(link::Link& link, link::Exchange& exchange);

 private:
  void switched();
  void tick();

  link::Link& link_;
  link::Exchange& exchange_;
  std::int16_t rotation_ = 0;
};

}  // namespace lumodevice::monitor
