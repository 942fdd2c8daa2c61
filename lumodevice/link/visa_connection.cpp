#include "lumodevice/link/visa_connection.hpp"

#include <array>

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

namespace {

constexpr std::string_view kAllInstruments = "?*INSTR";
constexpr std::string_view kIdentityQuery = "*IDN?\r";
constexpr std::size_t kIdentitySize = 72;
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

/// Only instruments on such interfaces are asked who they are; others may not bear a question.
bool isOurInterface(std::string_view interfaceName) {
  return text::contains(interfaceName, "GPIB") || text::contains(interfaceName, kProduct);
}

/// A text as it stands in a fixed-length buffer: cut, or padded with blanks.
std::string padded(std::string text, std::size_t size) {
  text.resize(size, ' ');
  return text;
}

}  // namespace

VisaConnection::VisaConnection(form::Controls& form, LinkState& state, Identity& identity,
                               Links& links, ChannelList& channels)
    : form_(form),
      state_(state),
      identity_(identity),
      library_(links.visaLibrary),
      com_(links.visaCom),
      serial_(links.serial),
      channels_(channels) {
  toolkit::handle(form_.cmdAutoConnVISA.click, [this] { AutoConnect(); });
  toolkit::handle(form_.cmdConnVISA.click, [this] { Connect(); });
  toolkit::handle(form_.optVISA.click, [this] { SelectVisa(); });
}

void VisaConnection::AutoConnect() {
  toolkit::Form& panel = form_.panel;
  try {
    panel.setMousePointer(kHourglass);
    connectToAny();
  } catch (...) {  // thrown by the host
    panel.setMousePointer(kArrow);
    throw;
  }
  panel.setMousePointer(kArrow);
}

void VisaConnection::connectToAny() {
  channels_.callbacks.forgetGroups();
  state_.setLinkName(kVisa);
  form_.cmbVISARes.clear();
  form_.cmbVISARes.setTag("");
  form_.cmbVISARes.setText("");
  if (!open({std::string(kAllInstruments), 256})) {
    return;
  }
  identity_.setAnswer(form_.txtReturn.text());
  if (identity_.answer().empty()) {
    channels_.NotConnect();
    return;
  }
  channels_.linkUp();
  identity_.ParseIdentity();
  attempt([&] { channels_.RefreshChannelList(); });
}

void VisaConnection::Connect() {
  state_.setLinkName(kVisa);
  form_.cmbVISARes.setTag("");
  if (!open({std::string(form_.cmbVISARes.text()), 255})) {
    return;
  }
  if (form_.txtReturn.text().empty()) {
    channels_.NotConnect();
    return;
  }
  channels_.linkUp();
  attempt([&] { channels_.RefreshChannelList(); });
}

bool VisaConnection::open(const Search& search) {
  state_.setDevAvaliable(false);
  if (!probe(search)) {
    return false;
  }
  // An answer left over from earlier must not pass for the one that this connect waits for.
  form_.txtReturn.setText("");
  if (form_.optVisa2.value()) {
    attempt([&] { openThroughVisaCom(); });
  } else {
    openThroughLibrary();
  }
  state_.setDevAvaliable(text::contains(form_.txtReturn.text(), kProduct));
  return true;
}

bool VisaConnection::probe(const Search& search) {
  if (!library_.openManager()) {
    return false;
  }
  std::uint32_t count = 0;
  std::string descriptor;
  if (!library_.find(search.expression, count, descriptor)) {
    library_.closeManager();
    return false;
  }
  while (count != 0) {
    probeCandidate(descriptor, search.descriptorSize);
    --count;
    if (!library_.findNext(descriptor)) {
      break;  // fewer than promised: asking the last one again would only list it twice
    }
  }
  if (form_.cmbVISARes.tag().empty()) {
    library_.closeSearch();
    return false;
  }
  return true;
}

void VisaConnection::probeCandidate(const std::string& descriptor, std::size_t descriptorSize) {
  if (!library_.open(descriptor)) {
    return;
  }
  if (isOurInterface(library_.interfaceName())) {
    library_.set(kProbeAttributes);
    if (text::contains(library_.ask(kIdentityQuery, kIdentitySize), kProduct)) {
      toolkit::ComboBox& resources = form_.cmbVISARes;
      resources.addItem(text::Trim(descriptor));
      resources.setTag(padded(descriptor, descriptorSize));
      resources.setText(text::Trim(descriptor));
    }
  }
  library_.closeSession();
}

/// The tag is padded to its buffer's size; a descriptor ends where its text does.
std::string VisaConnection::foundDescriptor() const {
  return text::Trim(form_.cmbVISARes.tag());
}

void VisaConnection::openThroughLibrary() {
  library_.open(foundDescriptor());
  (void)library_.interfaceName();
  library_.set(kLinkAttributes);
  const std::string identity = library_.ask(kIdentityQuery, kIdentitySize);
  if (!identity.empty()) {
    form_.txtReturn.setText(identity);
  }
}

void VisaConnection::openThroughVisaCom() {
  library_.closeSearch();
  com_.open(foundDescriptor());
  com_.device().WriteString(kIdentityQuery, true);
  form_.txtReturn.setText(com_.device().ReadString());
}

void VisaConnection::SelectVisa() {
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
