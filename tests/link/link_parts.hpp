#pragma once

#include "lumodevice/form/controls.hpp"
#include "lumodevice/link/channel_list.hpp"
#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/identity.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/link/links.hpp"
#include "lumodevice/link/serial_connection.hpp"
#include "lumodevice/link/visa_connection.hpp"
#include "lumodevice/link/waits.hpp"
#include "tests/support/bench.hpp"

namespace lumodevice::link {

/// The link's own operations on a form of their own, for what cannot be seen on a whole component:
/// nothing reads the panel back, and all members are at hand.
struct LinkParts {
  explicit LinkParts(Exchanges exchanges = Exchanges::Interleaved)
      : bench(support::Bench::Setup{.exchanges = exchanges}) {
    bench.stopReceivePoll();
    form.Timer2.setEnabled(false);
  }

  // A link that is open without a connect; they empty the journal.
  void useSerial() {
    bench.serial.ports[3].instrument = &bench.instrument;
    form.optConnRS232.setValue(true);
    MSComm1.setCommPort(3);
    MSComm1.setSettings("38400");
    MSComm1.setPortOpen(true);
    bench.journal();
  }
  void useVisaCom(const char* resource) {
    bench.visaCom.instruments = {{resource, &bench.instrument}};
    form.optVisa2.setValue(true);
    form.cmbVISARes.setText(resource);
    links.visaCom.open(resource);
    bench.journal();
  }

  /// Whether the serial port is in binary mode.
  [[nodiscard]] bool binary() const {
    return MSComm1.InputMode() == io::SerialPort::InputModes::Binary;
  }

  support::Bench bench;
  Host host = bench.host();
  form::Controls form{bench.loop};
  LinkState state{form};
  Waits waits{host, form.Text5};
  Links links{form, host};
  io::SerialPort& MSComm1 = links.serial.MSComm1;
  Identity identity;
  Turns turns{host, waits, state};
  Exchange exchange{host, form, waits, state, links, turns};
  ChannelList channels{form, state, identity, exchange};
  VisaConnection visa{form, host.visa, state, identity, links, turns, channels};
  SerialConnection serial{form, waits, state, identity, links, turns, channels};
};

}  // namespace lumodevice::link
