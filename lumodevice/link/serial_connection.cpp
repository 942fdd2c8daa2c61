#include "lumodevice/link/serial_connection.hpp"

#include <string>
#include <utility>

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

namespace {

constexpr std::string_view kSearchQuery = "*IDN?\r";
constexpr std::string_view kFinalQuery = "*IDN?\n";
constexpr double kIdentityWait = 1500;
constexpr double kRepeatWait = 300;

}  // namespace

SerialConnection::SerialConnection(form::Controls& form, Waits& waits, LinkState& state,
                                   Identity& identity, Links& links, Turns& turns,
                                   ChannelList& channels)
    : form_(form),
      waits_(waits),
      state_(state),
      identity_(identity),
      library_(links.visaLibrary),
      serial_(links.serial),
      turns_(turns),
      channels_(channels),
      reports_(links.reports) {
  toolkit::handle(form_.optConnRS232.click, [this] { SelectSerial(); });
  toolkit::handle(form_.cmdAuto.click, [this] { AutoConnect(); });
  toolkit::handle(form_.Command2.click, [this] { Connect(); });
}

void SerialConnection::SelectSerial() {
  const std::uint64_t connect = state_.beginConnect();
  leaveVisa();
  form_.cmdAuto.setEnabled(true);
  form_.Command2.setEnabled(true);
  form_.cmdAutoConnVISA.setEnabled(false);
  form_.cmdConnVISA.setEnabled(false);
  if (form_.Combo1.listCount() == 0 && !selecting_) {
    ScanSerialPorts(connect, kAllPorts);
  }
}

void SerialConnection::leaveVisa() {
  if (state_.connected()) {
    library_.close();
    state_.down();
  }
}

/// A link whose port is closed is none.
void SerialConnection::closePort() {
  if (serial_.MSComm1.PortOpen() && state_.connected() && state_.linkName() == kSerial) {
    state_.down();
  }
  serial_.close();
}

std::uint64_t SerialConnection::begin() {
  turns_.settle();
  reports_.begin();
  if (state_.linkName() == kVisa) {
    leaveVisa();
  }
  state_.setDevAvaliable(false);
  state_.setLinkName(kSerial);
  return state_.beginConnect();
}

void SerialConnection::AutoConnect() {
  search(kAllPorts, "");
}

void SerialConnection::ConnectTo(std::int16_t port, std::string_view identity) {
  search({port, port}, identity);
}

void SerialConnection::SelectAlone() {
  struct Selecting {
    explicit Selecting(bool& set) : flag(set) { flag = true; }
    ~Selecting() { flag = false; }
    bool& flag;
  } const selecting(selecting_);
  form_.optConnRS232.setValue(true);
}

void SerialConnection::search(const PortRange& ports, std::string_view identity) {
  const Turns::Operation operation(turns_);
  wanted_ = identity;
  found_ = false;
  const std::uint64_t connect = begin();
  ScanSerialPorts(connect, ports);
  if (form_.Combo1.listCount() > 0) {
    FindSerialInstrument(connect);
  }
  if (!state_.isLatest(connect)) {
    return;
  }
  connected_ = found_;
  state_.setDevAvaliable(found_);
  takeIntoUse();
}

void SerialConnection::takeIntoUse() {
  if (connected_ && text::contains(form_.txtReturn.text(), kProduct)) {
    reports_.reached(form_.txtReturn.text(), "COM" + std::to_string(serial_.MSComm1.CommPort()));
  }
  attempt([&] { channels_.ApplyConnectResult(connected_); });
  if (state_.connected()) {
    reports_.connected();
  }
}

/// The first of several says most. That a port is not there says least, and that nothing answers
/// there little: the next baud rate may be the right one.
void SerialConnection::noteWhy(FailureKind kind, std::string_view more) {
  const auto weight = [](FailureKind each) {
    const bool silent = each == FailureKind::NoAnswer;
    return each == FailureKind::None || each == FailureKind::NothingFound ? 0 : (silent ? 1 : 2);
  };
  const FailureKind before = reports_.failure().kind;
  if (before == FailureKind::None || weight(kind) > weight(before)) {
    reports_.fail(kind, more);
  }
}

/// Like attempt(), for a step that opens a port.
template <typename Step>
void SerialConnection::tryOpening(Step&& step) {
  try {
    step();
  } catch (const Fault& fault) {
    noteWhy(kindOf(fault, true), fault.what());
  }
}

/// Ends early for a connect that was begun meanwhile: the port that comes next would take its
/// place.
void SerialConnection::ScanSerialPorts(std::uint64_t connect, const PortRange& range) {
  ports_.fill(0);
  form_.Combo1.clear();
  portCount_ = 0;
  for (std::int16_t port = range.first; port <= range.last && state_.isLatest(connect); ++port) {
    closePort();
    tryOpening([&] {
      serial_.MSComm1.setCommPort(port);
      serial_.MSComm1.setPortOpen(true);
    });
    if (serial_.MSComm1.PortOpen()) {
      ++portCount_;
      ports_[static_cast<std::size_t>(portCount_)] = port;
      form_.Combo1.addItem("COM" + std::to_string(port));
    }
    waits_.processEvents();
  }
}

void SerialConnection::FindSerialInstrument(std::uint64_t connect) {
  const auto entries = static_cast<std::int16_t>(form_.Combo1.listCount());
  if (state_.isLatest(connect)) {
    closePort();
  }
  bool searching = true;
  const auto goesOn = [&] { return searching && state_.isLatest(connect); };
  for (int baud = 0; baud < form_.Combo2.listCount() && goesOn(); ++baud) {
    portCount_ = entries;
    while (portCount_ > 0 && goesOn()) {
      std::string answer;
      // A port that has gone since the scan is passed over like one that does not answer.
      tryOpening([&] { answer = tryPort(portCount_, baud, connect); });
      if (!state_.isLatest(connect)) {
        return;
      }
      if (isWanted(answer)) {
        searching = false;
        form_.txtReturn.setText(answer);
      } else {
        noteWhy(answer.empty() ? FailureKind::NoAnswer : FailureKind::WrongInstrument,
                form_.Combo1.text());
      }
      --portCount_;
      waits_.processEvents();
    }
  }
  found_ = !searching && state_.isLatest(connect);
}

bool SerialConnection::isWanted(std::string_view answer) const {
  const std::string_view identity = answer.substr(0, answer.find_last_not_of("\r\n") + 1);
  return text::contains(identity, kProduct) && (wanted_.empty() || identity == wanted_);
}

/// "" where another connect was begun meanwhile: the port is that one's then.
std::string SerialConnection::tryPort(std::int16_t entry, int baudIndex, std::uint64_t connect) {
  closePort();
  form_.Combo1.setListIndex(entry - 1);
  form_.Combo2.setListIndex(baudIndex);
  serial_.MSComm1.setCommPort(ports_[static_cast<std::size_t>(entry)]);
  serial_.MSComm1.setSettings(text::numberText(text::Val(form_.Combo2.text())));
  serial_.MSComm1.setPortOpen(true);
  if (turns_.inTurn()) {
    return identityInTurn(connect);
  }
  // The first answer may hold whatever waited on the line; only the second one counts.
  (void)SerialQueryIdentity();
  waits_.processEvents();
  if (!state_.isLatest(connect)) {
    return {};
  }
  waits_.sleep(kRepeatWait);
  std::string answer = SerialQueryIdentity();
  waits_.processEvents();
  return answer;
}

/// The second try is for an instrument that holds the remains of queries at another baud rate. The
/// answer to the first one may then still be on its way.
std::string SerialConnection::identityInTurn(std::uint64_t connect) {
  const auto ask = [this] { return turns_.run(serial_, std::string(kSearchQuery), kIdentityWait); };
  noteLine();
  std::optional<std::string> identity = ask();
  if (!identity && state_.isLatest(connect)) {
    const bool firstIsDue = turns_.forgetLateAnswer();
    waits_.sleep(kRepeatWait);
    identity = ask();
    if (identity && firstIsDue) {
      turns_.giveUp(serial_);  // one of the two answers is still to come
    }
  }
  return identity ? *identity + '\n' : std::string();
}

/// What was asked on another port, or at another baud rate, is not answered here.
void SerialConnection::noteLine() {
  std::string line = std::to_string(serial_.MSComm1.CommPort()) + ' ' + serial_.MSComm1.Settings();
  if (line != line_) {
    turns_.forgetLateAnswer();
    line_ = std::move(line);
  }
}

std::string SerialConnection::SerialQueryIdentity() {
  serial_.MSComm1.Output(kSearchQuery);
  waits_.sleep(kIdentityWait);
  std::string answer = serial_.MSComm1.Input();
  const bool complete = answer.ends_with('\n') || answer.ends_with('\r');
  return complete ? answer : std::string();
}

void SerialConnection::Connect() {
  const Turns::Operation operation(turns_);
  const std::uint64_t connect = begin();
  const Before before{.port = serial_.MSComm1.CommPort(),
                      .settings = serial_.MSComm1.Settings(),
                      .linkIsOpen = serial_.MSComm1.PortOpen() && state_.connected()};
  bool asked = false;
  tryOpening([&] {
    openChosenPort();
    // An answer left over from earlier must not pass for the one that this connect waits for.
    form_.txtReturn.setText("");
    askIdentity();
    asked = true;
  });
  if (!state_.isLatest(connect)) {
    return;
  }
  if (!asked) {
    goBackTo(before);
    return;
  }
  takeIdentity();
  takeIntoUse();
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

void SerialConnection::askIdentity() {
  if (turns_.inTurn()) {
    noteLine();
    form_.txtReturn.setText(
        turns_.run(serial_, std::string(kFinalQuery), kIdentityWait).value_or(""));
    return;
  }
  serial_.MSComm1.Output(kFinalQuery);
  serial_.expectAnswer();
  waits_.processEvents();
  waits_.waitUnits(1);
  waits_.processEvents();
}

/// Without an answer the outcome of the last connect stands; in turn, where all the time was given
/// to an answer, there is no instrument then.
void SerialConnection::takeIdentity() {
  const std::string& answer = form_.txtReturn.text();
  if (!text::contains(answer, kProduct)) {
    noteWhy(answer.empty() ? FailureKind::NoAnswer : FailureKind::WrongInstrument,
            "COM" + std::to_string(serial_.MSComm1.CommPort()));
  }
  if (answer.empty() && !turns_.inTurn()) {
    return;
  }
  connected_ = text::contains(answer, kProduct);
  identity_.setAnswer(connected_ ? answer : std::string());
  state_.setDevAvaliable(connected_);
  if (connected_) {
    identity_.ParseIdentity();
  }
}

/// A port that cannot be used leaves the link what it was; where that cannot be had back, there is
/// none.
void SerialConnection::goBackTo(const Before& before) {
  if (!before.linkIsOpen) {
    return;
  }
  const bool reopened = attempt([&] {
    serial_.close();
    serial_.MSComm1.setCommPort(before.port);
    serial_.MSComm1.setSettings(before.settings);
    serial_.MSComm1.setPortOpen(true);
  });
  if (!reopened) {
    state_.down();
    channels_.NotConnect();
  }
}

}  // namespace lumodevice::link
