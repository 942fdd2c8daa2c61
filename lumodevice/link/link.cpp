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
  sleep(milliseconds);
}

void Link::waitUnits(double units) {
  attempt([&] { sleep(units * text::Val(form.Text5.text())); });
}

void Link::sleep(double milliseconds) {
  goOn();
  host.loop.sleep(milliseconds);
  goOn();
}

void Link::processEvents() {
  goOn();
  host.loop.processEvents();
  goOn();
}

void Link::showBox(std::string_view text) {
  goOn();
  host.informationBox(text);
  goOn();
}

void Link::end() {
  if (connected() && form.optVisa1.value()) {
    closeVisa();
  }
  attempt([this] { closeSerialPort(); });
  devZAN.reset();
  resourceManagerObject.reset();
  form.cmdSendCmd.setEnabled(false);
  linkName.clear();
  bDevAvaliable = false;
  ended_ = true;
}

/// Whatever ran during a wait may have ended the component.
void Link::goOn() const {
  if (ended_) {
    throw toolkit::OperationEnded();
  }
}

}  // namespace lumodevice::link
