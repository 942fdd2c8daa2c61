#include "lumodevice/link/serial_connection.hpp"

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

namespace {

constexpr double kIdentityWait = 1500;
constexpr double kRepeatWait = 300;

}  // namespace

SerialConnection::SerialConnection(form::Controls& form, Waits& waits, LinkState& state,
                                   Identity& identity, Links& links, ChannelList& channels)
    : form_(form),
      waits_(waits),
      state_(state),
      identity_(identity),
      library_(links.visaLibrary),
      serial_(links.serial),
      channels_(channels) {
  toolkit::handle(form_.optConnRS232.click, [this] { SelectSerial(); });
  toolkit::handle(form_.cmdAuto.click, [this] { AutoConnect(); });
  toolkit::handle(form_.Command2.click, [this] { Connect(); });
}

void SerialConnection::SelectSerial() {
  if (state_.connected()) {
    library_.close();
    state_.down();
  }
  form_.cmdAuto.setEnabled(true);
  form_.Command2.setEnabled(true);
  form_.cmdAutoConnVISA.setEnabled(false);
  form_.cmdConnVISA.setEnabled(false);
  if (form_.Combo1.listCount() == 0) {
    ScanSerialPorts();
  }
}

void SerialConnection::AutoConnect() {
  found_ = false;
  state_.setDevAvaliable(false);
  state_.setLinkName(kSerial);
  ScanSerialPorts();
  if (form_.Combo1.listCount() > 0) {
    FindSerialInstrument();
  }
  if (found_ && !serial_.MSComm1.PortOpen()) {
    return;  // the other link was chosen meanwhile, perhaps connected
  }
  connected_ = found_;
  state_.setDevAvaliable(found_);
  attempt([&] { channels_.ApplyConnectResult(connected_); });
}

void SerialConnection::ScanSerialPorts() {
  ports_.fill(0);
  form_.Combo1.clear();
  portCount_ = 0;
  for (std::int16_t port = 1; port <= kPorts; ++port) {
    serial_.close();
    attempt([&] {
      serial_.MSComm1.setCommPort(port);
      serial_.MSComm1.setPortOpen(true);
    });
    if (serial_.MSComm1.PortOpen()) {
      ++portCount_;
      ports_[static_cast<std::size_t>(portCount_)] = port;
      form_.Combo1.addItem("COM" + std::to_string(port));
    }
    const bool connected = state_.connected();
    waits_.processEvents();
    if (!connected && state_.connected()) {
      return;  // connected meanwhile: the port that comes next would take the link's place
    }
  }
}

void SerialConnection::FindSerialInstrument() {
  const auto entries = static_cast<std::int16_t>(form_.Combo1.listCount());
  serial_.close();
  bool searching = true;
  for (int baud = 0; baud < form_.Combo2.listCount() && searching; ++baud) {
    portCount_ = entries;
    while (portCount_ > 0 && searching) {
      std::string answer;
      // A port that has gone since the scan is passed over like one that does not answer.
      attempt([&] { answer = tryPort(portCount_, baud); });
      if (text::contains(answer, kProduct)) {
        searching = false;
        form_.txtReturn.setText(answer);
      }
      --portCount_;
      waits_.processEvents();
    }
  }
  found_ = !searching;
}

std::string SerialConnection::tryPort(std::int16_t entry, int baudIndex) {
  serial_.close();
  form_.Combo1.setListIndex(entry - 1);
  form_.Combo2.setListIndex(baudIndex);
  serial_.MSComm1.setCommPort(ports_[static_cast<std::size_t>(entry)]);
  serial_.MSComm1.setSettings(text::numberText(text::Val(form_.Combo2.text())));
  serial_.MSComm1.setPortOpen(true);
  // The first answer may hold whatever waited on the line; only the second one counts.
  (void)SerialQueryIdentity();
  waits_.processEvents();
  waits_.sleep(kRepeatWait);
  std::string answer = SerialQueryIdentity();
  waits_.processEvents();
  return answer;
}

std::string SerialConnection::SerialQueryIdentity() {
  serial_.MSComm1.Output("*IDN?\r");
  waits_.sleep(kIdentityWait);
  std::string answer = serial_.MSComm1.Input();
  const bool complete = answer.ends_with('\n') || answer.ends_with('\r');
  return complete ? answer : std::string();
}

void SerialConnection::Connect() {
  state_.setLinkName(kSerial);
  state_.setDevAvaliable(false);
  attempt([&] {
    openChosenPort();
    // An answer left over from earlier must not pass for the one that this connect waits for.
    form_.txtReturn.setText("");
    serial_.MSComm1.Output("*IDN?\n");
    // The receive poll may have gone to rest after the last answer; without it none would ever
    // arrive.
    serial_.expectAnswer();
    waits_.processEvents();
    waits_.waitUnits(1);
    waits_.processEvents();
    if (!serial_.MSComm1.PortOpen()) {
      return;  // the other link was chosen meanwhile, perhaps connected
    }
    const std::string& answer = form_.txtReturn.text();
    if (!answer.empty()) {
      connected_ = text::contains(answer, kProduct);
      identity_.setAnswer(connected_ ? answer : std::string());
      state_.setDevAvaliable(connected_);
      if (connected_) {
        identity_.ParseIdentity();
      }
    }
    channels_.ApplyConnectResult(connected_);
  });
}

void SerialConnection::openChosenPort() {
  serial_.close();
  serial_.MSComm1.setCommPort(text::toWhole16(text::Val(form_.Text1.text())));
  serial_.MSComm1.setSettings(form_.Combo2.text());
  try {
    serial_.MSComm1.setPortOpen(true);
  } catch (const io::SerialFault& fault) {
    if (fault.number() != io::kSerialAlreadyOpen) {
      throw;
    }
  }
}

}  // namespace lumodevice::link
