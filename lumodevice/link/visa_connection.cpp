#include "lumodevice/link/visa_connection.hpp"

#include <array>

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

namespace {

constexpr std::string_view kAllInstruments = "?*INSTR";
constexpr std::string_view kIdentityQuery = "*IDN?\r";
constexpr std::size_t kIdentitySize = 72;
constexpr std::size_t kDescriptorSize = 256;
/// Milliseconds that an identity is waited for at most, in turn.
constexpr double kIdentityPatience = 1400;
constexpr int kHourglass = 11;
constexpr int kArrow = 1;

using Attribute = VisaLibraryLink::Attribute;
constexpr std::uint32_t kTrue = 0xFFFFFFFF;  // an automation True: all bits set

constexpr std::array kProbeAttributes = std::to_array<Attribute>({
    {io::VI_ATTR_TERMCHAR, '\r'},
    {io::VI_ATTR_TERMCHAR_EN, kTrue},
    {io::VI_ATTR_TMO_VALUE, 200},
    {io::VI_ATTR_SEND_END_EN, 0},
});
constexpr std::array kLinkAttributes = std::to_array<Attribute>({
    {io::VI_ATTR_TERMCHAR, '\r'},
    {io::VI_ATTR_TERMCHAR_EN, kTrue},
    {io::VI_ATTR_TMO_VALUE, 150},
});

constexpr std::array kSendEnd = std::to_array<Attribute>({{io::VI_ATTR_SEND_END_EN, kTrue}});

/// Only instruments on such interfaces are asked who they are; others may not bear a question.
bool isOurInterface(std::string_view interfaceName) {
  return text::contains(interfaceName, "GPIB") || text::contains(interfaceName, kProduct);
}

std::string_view withoutEnd(std::string_view identity) {
  return identity.substr(0, identity.find_last_not_of("\r\n") + 1);
}

/// A text as it stands in a fixed-length buffer: cut, or padded with blanks.
std::string padded(std::string text, std::size_t size) {
  text.resize(size, ' ');
  return text;
}

}  // namespace

VisaConnection::VisaConnection(form::Controls& form, io::Visa& visa, LinkState& state,
                               Identity& identity, Links& links, Turns& turns,
                               ChannelList& channels)
    : form_(form),
      visa_(visa),
      state_(state),
      identity_(identity),
      library_(links.visaLibrary),
      com_(links.visaCom),
      serial_(links.serial),
      turns_(turns),
      channels_(channels),
      reports_(links.reports),
      gate_(links.gate) {
  toolkit::handle(form_.cmdAutoConnVISA.click, [this] { AutoConnect(); });
  toolkit::handle(form_.cmdConnVISA.click, [this] { Connect(); });
  toolkit::handle(form_.optVISA.click, [this] { SelectVisa(); });
}

void VisaConnection::AutoConnect() {
  search({std::string(kAllInstruments), kDescriptorSize});
}

void VisaConnection::ConnectTo(std::string_view address, std::string_view identity) {
  search({.expression = std::string(address),
          .descriptorSize = kDescriptorSize,
          .address = address.find_first_of("?*[]|+") == std::string_view::npos,
          .identity = std::string(identity)});
}

void VisaConnection::search(const Search& search) {
  toolkit::Form& panel = form_.panel;
  try {
    panel.setMousePointer(kHourglass);
    connectToAny(search);
  } catch (...) {  // thrown by the host
    panel.setMousePointer(kArrow);
    throw;
  }
  panel.setMousePointer(kArrow);
}

void VisaConnection::connectToAny(const Search& search) {
  const Turns::Operation operation(turns_);
  begin();
  channels_.callbacks.forgetGroups();
  form_.cmbVISARes.clear();
  form_.cmbVISARes.setTag("");
  form_.cmbVISARes.setText("");
  if (!open(search)) {
    return;
  }
  identity_.setAnswer(form_.txtReturn.text());
  if (identity_.answer().empty()) {
    channels_.NotConnect();
    return;
  }
  identity_.ParseIdentity();
  takeIntoUse();
}

void VisaConnection::takeIntoUse() {
  reports_.reached(form_.txtReturn.text(), foundDescriptor());
  channels_.linkUp();
  attempt([&] { channels_.RefreshChannelList(); });
  if (state_.connected()) {
    reports_.connected();
  }
}

void VisaConnection::Connect() {
  const Turns::Operation operation(turns_);
  begin();
  form_.cmbVISARes.setTag("");
  if (!open({std::string(form_.cmbVISARes.text()), 255})) {
    return;
  }
  if (form_.txtReturn.text().empty()) {
    channels_.NotConnect();
    return;
  }
  takeIntoUse();
}

/// Whoever waits for an answer over the link before has it first.
void VisaConnection::begin() {
  turns_.settle();
  reports_.begin();
  (void)state_.beginConnect();
  state_.setDevAvaliable(false);
}

/// A search that finds nothing leaves the link that there was, and it goes on working.
bool VisaConnection::open(const Search& search) {
  VisaLibraryLink found(visa_, gate_);
  if (!probe(found, search)) {
    return false;
  }
  state_.setLinkName(kVisa);
  // Its session may be the one that locks the instrument that was found.
  library_.closeWhatIsOpen();
  // An answer left over from earlier must not pass for the one that this connect waits for.
  form_.txtReturn.setText("");
  const bool overCom = form_.optVisa2.value();
  if (overCom) {
    attempt([&] { openThroughVisaCom(found); });
  } else {
    openThroughLibrary(found);
  }
  const bool silent = form_.txtReturn.text().empty();
  if (turns_.inTurn() && silent) {
    noteWhy(FailureKind::NoAnswer, foundDescriptor());
    library_.closeWhatIsOpen();
    com_.close();
  }
  // Interleaved, a session whose instrument is silent stays, and so does the link.
  if (silent && (overCom ? com_.descriptor() : library_.descriptor()).empty()) {
    state_.down();
  }
  state_.setDevAvaliable(text::contains(form_.txtReturn.text(), kProduct));
  return true;
}

bool VisaConnection::probe(VisaLibraryLink& found, const Search& search) {
  if (!found.openManager()) {
    noteWhy(kindOf(found.status()), "VISA");
    return false;
  }
  std::uint32_t count = 0;
  std::string descriptor;
  if (!found.find(search.expression, count, descriptor)) {
    if (!search.address) {
      noteWhy(kindOf(found.status()), search.expression);
      found.closeManager();
      return false;
    }
    count = 1;
    descriptor = search.expression;
  }
  while (count != 0) {
    probeCandidate(found, descriptor, search);
    --count;
    if (!found.findNext(descriptor)) {
      break;  // fewer than promised: asking the last one again would only list it twice
    }
  }
  if (form_.cmbVISARes.tag().empty()) {
    found.closeSearch();
    return false;
  }
  return true;
}

void VisaConnection::probeCandidate(VisaLibraryLink& found, const std::string& descriptor,
                                    const Search& search) {
  const std::string identity = identityOf(found, descriptor, search.address);
  const bool wanted = search.identity.empty() || search.identity.starts_with(withoutEnd(identity));
  if (!text::contains(identity, kProduct) || !wanted) {
    noteWhy(identity.empty() ? FailureKind::NoAnswer : FailureKind::WrongInstrument, descriptor);
    return;
  }
  toolkit::ComboBox& resources = form_.cmbVISARes;
  resources.addItem(text::Trim(descriptor));
  resources.setTag(padded(descriptor, search.descriptorSize));
  resources.setText(text::Trim(descriptor));
}

/// The first of several says most: what comes later may be any other resource.
void VisaConnection::noteWhy(FailureKind kind, std::string_view descriptor) {
  if (!reports_.failed()) {
    reports_.fail(kind, descriptor);
  }
}

/// A layer that is no VISA library says so of what it cannot speak.
void VisaConnection::noteWhyClosed(io::ViStatus status, const std::string& descriptor) {
  if (status == io::VI_ERROR_LIBRARY_NFOUND) {
    noteWhy(FailureKind::BadAddress,
            text::Trim(descriptor) +
                " needs a VISA library; sockets, USB and serial ports work without");
  } else {
    noteWhy(kindOf(status), descriptor);
  }
}

/// The instrument of the link that there is would refuse a second session: it is asked over the one
/// that it has.
std::string VisaConnection::identityOf(VisaLibraryLink& found, const std::string& descriptor,
                                       bool anyInterface) {
  if (descriptor == library_.descriptor()) {
    library_.set(kProbeAttributes);
    std::string identity = library_.ask(kIdentityQuery, kIdentitySize);
    if (library_.status() >= 0 || library_.status() == io::VI_ERROR_TMO) {
      library_.set(kLinkAttributes);
      library_.set(kSendEnd);
      return identity;
    }
    leaveLostLink();
  }
  if (descriptor == com_.descriptor()) {
    if (auto identity = identityOverCom()) {
      return *identity;
    }
    leaveLostLink();
  }
  if (!found.open(descriptor)) {
    noteWhyClosed(found.status(), descriptor);
    return {};
  }
  std::string identity;
  if (isOurInterface(found.interfaceName()) || anyInterface) {
    found.set(kProbeAttributes);
    identity = found.ask(kIdentityQuery, kIdentitySize);
    if (found.status() < 0) {
      noteWhy(kindOf(found.status()), descriptor);
    }
  }
  found.closeSession();
  return identity;
}

std::string VisaConnection::askOverCom() {
  com_.send(kIdentityQuery);
  return com_.receive();
}

/// "" when the instrument did not answer in time; nothing when the session is lost.
std::optional<std::string> VisaConnection::identityOverCom() {
  try {
    return askOverCom();
  } catch (const io::VisaComFault& fault) {
    return fault.number() == static_cast<int>(io::E_VISA_TMO) ? std::optional<std::string>("")
                                                              : std::nullopt;
  }
}

/// A session that does not live any more would stand in the way of the one that takes its place.
void VisaConnection::leaveLostLink() {
  library_.closeWhatIsOpen();
  com_.close();
  state_.down();
}

/// The tag is padded to its buffer's size; a descriptor ends where its text does.
std::string VisaConnection::foundDescriptor() const {
  return text::Trim(form_.cmbVISARes.tag());
}

void VisaConnection::openThroughLibrary(VisaLibraryLink& found) {
  found.open(foundDescriptor());
  (void)found.interfaceName();
  found.set(kLinkAttributes);
  library_.takeOver(found);
  showIdentity(library_, [&] { return library_.ask(kIdentityQuery, kIdentitySize); });
}

void VisaConnection::openThroughVisaCom(VisaLibraryLink& found) {
  found.closeSearch();
  com_.open(foundDescriptor());
  showIdentity(com_, [this] { return askOverCom(); });
}

/// In turn the identity is waited for as any answer is; else it is read once.
template <typename Ask>
void VisaConnection::showIdentity(Transport& link, const Ask& ask) {
  std::string identity;
  if (!turns_.inTurn()) {
    identity = ask();
  } else if (const auto answer = turns_.run(link, std::string(kIdentityQuery), kIdentityPatience)) {
    identity = *answer + '\n';
  }
  if (!identity.empty()) {
    form_.txtReturn.setText(identity);
  }
}

void VisaConnection::SelectVisa() {
  (void)state_.beginConnect();
  if (serial_.MSComm1.PortOpen()) {
    serial_.close();
    state_.down();
    channels_.NotConnect();
  }
  form_.cmdAuto.setEnabled(false);
  form_.Command2.setEnabled(false);
  form_.Timer2.setEnabled(false);
  form_.cmdAutoConnVISA.setEnabled(true);
  form_.cmdConnVISA.setEnabled(true);
}

}  // namespace lumodevice::link
