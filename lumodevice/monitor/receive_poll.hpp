#pragma once

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link.hpp"

namespace lumodevice::monitor {

/// The tick of Timer2: puts serial answers together, sends the one queued command after each, and
/// shows finished answers of the auto query in the read-outs. A failed step is passed over.
class ReceivePoll {
 public:
  /// Takes over Timer2.
  ReceivePoll(link::Link& link, link::Exchange& exchange);

 private:
  void tick();
  void receive();
  [[nodiscard]] bool complete() const;
  void deliver();
  void updateReadOut();

  link::Link& link_;
  link::Exchange& exchange_;
};

}  // namespace lumodevice::monitor
