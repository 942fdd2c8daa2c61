#pragma once

#include "lumodevice/form/form.hpp"
#include "lumodevice/link/channel_list.hpp"
#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link.hpp"
#include "lumodevice/link/serial_connection.hpp"
#include "lumodevice/link/visa_connection.hpp"
#include "tests/support/bench.hpp"

namespace lumodevice::link {

/// The link's own operations on a form of their own, for what cannot be seen on a whole component:
/// nothing reads the panel back, and all members are at hand.
struct LinkParts {
  LinkParts() {
    bench.stopReceivePoll();
    form.Timer2.setEnabled(false);
  }

  support::Bench bench;
  form::Form form{bench.loop};
  Link link{form, bench.host()};
  Exchange exchange{link};
  ChannelList channels{link, exchange};
  VisaConnection visa{link, channels};
  SerialConnection serial{link, channels};
};

}  // namespace lumodevice::link
