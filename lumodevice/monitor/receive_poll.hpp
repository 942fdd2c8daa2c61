#pragma once

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/serial_link.hpp"
#include "lumodevice/link/waits.hpp"

namespace lumodevice::monitor {

/// The tick of Timer2: puts serial answers together, sends the one queued command after each, and
/// shows finished answers of the auto query in the read-outs. A failed step is passed over.
class ReceivePoll {
 public:
  /// Takes over Timer2.
  ReceivePoll(form::Controls& form, link::Waits& waits, link::SerialLink& serial,
              link::Exchange& exchange);

 private:
  void tick();
  void deliver();
  void updateReadOut();

  form::Controls& form_;
  link::Waits& waits_;
  link::SerialLink& serial_;
  link::Exchange& exchange_;
};

}  // namespace lumodevice::monitor
