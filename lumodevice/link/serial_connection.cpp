#include "lumodevice/link/serial_connection.hpp"

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

namespace {

constexpr double kIdentityWait = 1500;
constexpr double kRepeatWait = 300;

}  // namespace

SerialConnection::SerialConnection(Link& link, ChannelList& channels)
    : link_(link), channels_(channels) {
  toolkit::handle(link_.form.optConnRS232.click, [this] { SelectSerial(); });
  toolkit::handle(link_.form.cmdAuto.click, [this] { AutoConnect(); });
  toolkit::handle(link_.form.Command2.click, [this] { Connect(); });
}

void SerialConnection::SelectSerial() {
  form::Controls& form = link_.form;
  if (link_.connected()) {
    link_.closeVisa();
    channels_.linkDown();
  }
  form.cmdAuto.setEnabled(true);
  form.Command2.setEnabled(true);
  form.cmdAutoConnVISA.setEnabled(false);
  form.cmdConnVISA.setEnabled(false);
  if (form.Combo1.listCount() == 0) {
    ScanSerialPorts();
  }
}

void SerialConnection::AutoConnect() {
  found_ = false;
  link_.bDevAvaliable = false;
  link_.linkName = kSerial;
  ScanSerialPorts();
  if (link_.form.Combo1.listCount() > 0) {
    FindSerialInstrument();
  }
  if (found_ && !link_.MSComm1.PortOpen()) {
    return;  // the other link was chosen meanwhile, perhaps connected
  }
  connected_ = found_;
  link_.bDevAvaliable = found_;
  attempt([&] { channels_.ApplyConnectResult(connected_); });
}

void SerialConnection::ScanSerialPorts() {
  ports_.fill(0);
  link_.form.Combo1.clear();
  portCount_ = 0;
  for (std::int16_t port = 1; port <= kPorts; ++port) {
    link_.closeSerialPort();
    attempt([&] {
      link_.MSComm1.setCommPort(port);
      link_.MSComm1.setPortOpen(true);
    });
    if (link_.MSComm1.PortOpen()) {
      ++portCount_;
      ports_[static_cast<std::size_t>(portCount_)] = port;
      link_.form.Combo1.addItem("COM" + std::to_string(port));
    }
    const bool connected = link_.connected();
    link_.processEvents();
    if (!connected && link_.connected()) {
      return;  // connected meanwhile: the port that comes next would take the link's place
    }
  }
}

void SerialConnection::FindSerialInstrument() {
  form::Controls& form = link_.form;
  const auto entries = static_cast<std::int16_t>(form.Combo1.listCount());
  link_.closeSerialPort();
  bool searching = true;
  for (int baud = 0; baud < form.Combo2.listCount() && searching; ++baud) {
    portCount_ = entries;
    while (portCount_ > 0 && searching) {
      std::string answer;
      // A port that has gone since the scan is passed over like one that does not answer.
      attempt([&] { answer = tryPort(portCount_, baud); });
      if (text::contains(answer, kProduct)) {
        searching = false;
        form.txtReturn.setText(answer);
      }
      --portCount_;
      link_.processEvents();
    }
  }
  found_ = !searching;
}

std::string SerialConnection::tryPort(std::int16_t entry, int baudIndex) {
  form::Controls& form = link_.form;
  link_.closeSerialPort();
  form.Combo1.setListIndex(entry - 1);
  form.Combo2.setListIndex(baudIndex);
  link_.MSComm1.setCommPort(ports_[static_cast<std::size_t>(entry)]);
  link_.MSComm1.setSettings(text::numberText(text::Val(form.Combo2.text())));
  link_.MSComm1.setPortOpen(true);
  // The first answer may hold whatever waited on the line; only the second one counts.
  (void)SerialQueryIdentity();
  link_.processEvents();
  link_.sleep(kRepeatWait);
  std::string answer = SerialQueryIdentity();
  link_.processEvents();
  return answer;
}

std::string SerialConnection::SerialQueryIdentity() {
  link_.MSComm1.Output("*IDN?\r");
  link_.sleep(kIdentityWait);
  std::string answer = link_.MSComm1.Input();
  const bool complete = answer.ends_with('\n') || answer.ends_with('\r');
  return complete ? answer : std::string();
}

void SerialConnection::Connect() {
  link_.linkName = kSerial;
  link_.bDevAvaliable = false;
  attempt([&] {
    openChosenPort();
    // An answer left over from earlier must not pass for the one that this connect waits for.
    link_.form.txtReturn.setText("");
    link_.MSComm1.Output("*IDN?\n");
    // The receive poll may have gone to rest after the last answer; without it none would ever
    // arrive.
    link_.form.Timer2.setEnabled(true);
    link_.answerPending = true;
    link_.processEvents();
    link_.waitUnits(1);
    link_.processEvents();
    if (!link_.MSComm1.PortOpen()) {
      return;  // the other link was chosen meanwhile, perhaps connected
    }
    const std::string& answer = link_.form.txtReturn.text();
    if (!answer.empty()) {
      connected_ = text::contains(answer, kProduct);
      link_.identity = connected_ ? answer : std::string();
      link_.bDevAvaliable = connected_;
      if (connected_) {
        channels_.ParseIdentity();
      }
    }
    channels_.ApplyConnectResult(connected_);
  });
}

void SerialConnection::openChosenPort() {
  link_.closeSerialPort();
  link_.MSComm1.setCommPort(text::toWhole16(text::Val(link_.form.Text1.text())));
  link_.MSComm1.setSettings(link_.form.Combo2.text());
  try {
    link_.MSComm1.setPortOpen(true);
  } catch (const io::SerialFault& fault) {
    if (fault.number() != io::kSerialAlreadyOpen) {
      throw;
    }
  }
}

}  // namespace lumodevice::link
