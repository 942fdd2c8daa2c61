#include "lumodevice/link/link.hpp"

#include "lumodevice/text/text.hpp"

namespace lumodevice::link {

namespace {

constexpr int kObjectNotSet = 91;

}  // namespace

io::FormattedIO488& Link::device() const {
  if (!devZAN) {
    throw io::VisaComFault(kObjectNotSet, "no VISA COM instrument is open");
  }
  return *devZAN;
}

std::shared_ptr<io::MessageSession> Link::session() const {
  auto session = device().IO();
  if (!session) {
    throw io::VisaComFault(kObjectNotSet, "the formatted-I/O object has no session");
  }
  return session;
}

std::int32_t Link::chosenTimeout() const {
  return text::toWhole32(text::Val(form.txtVISATimeout.text()));
}

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

void Link::pause(double milliseconds) {
  processEvents();
  host.loop.sleep(milliseconds);
}

void Link::waitUnits(double units) {
  attempt([&] { host.loop.sleep(units * text::Val(form.Text5.text())); });
}

}  // namespace lumodevice::link
