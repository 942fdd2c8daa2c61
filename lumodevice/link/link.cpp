#include "lumodevice/link/link.hpp"

#include "lumodevice/text/text.hpp"

namespace lumodevice::link {

void Link::forgetSerialAnswer() {
  answerPending = false;
  receiveBuffer.clear();
  pollCount = 0;
}

void Link::closeSerialPort() {
  if (MSComm1.PortOpen()) {
    MSComm1.setPortOpen(false);
    forgetSerialAnswer();
  }
}

void Link::closeVisaObject(io::ViObject& handle) {
  visaStatus = host.visa.viClose(handle);
  handle = 0;
}

void Link::closeVisa() {
  closeVisaObject(visaSession);
  closeVisaObject(findList);
  closeVisaObject(resourceManager);
}

void Link::waitUnits(double units) {
  attempt([&] { host.loop.sleep(units * text::Val(form.Text5.text())); });
}

}  // namespace lumodevice::link
