#pragma once

#include "lumodevice/form/controls.hpp"
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

  // A link that is open without a connect; they empty the journal.
  void useSerial() {
    bench.serial.ports[3].instrument = &bench.instrument;
    form.optConnRS232.setValue(true);
    link.MSComm1.setCommPort(3);
    link.MSComm1.setSettings("38400");
    link.MSComm1.setPortOpen(true);
    bench.journal();
  }
  void useVisaCom(const char* resource) {
    bench.visaCom.instruments = {{resource, &bench.instrument}};
    form.optVisa2.setValue(true);
    form.cmbVISARes.setText(resource);
    link.devZAN = bench.visaCom.createFormattedIO488();
    link.devZAN->setIO(bench.visaCom.createResourceManager()->Open(resource, 0, 2000, ""));
    bench.journal();
  }

  /// Whether the serial port is in binary mode.
  [[nodiscard]] bool binary() const {
    return link.MSComm1.InputMode() == io::SerialPort::InputModes::Binary;
  }

  support::Bench bench;
  form::Controls form{bench.loop};
  Link link{form, bench.host()};
  Exchange exchange{link};
  ChannelList channels{link, exchange};
  VisaConnection visa{link, channels};
  SerialConnection serial{link, channels};
};

}  // namespace lumodevice::link
