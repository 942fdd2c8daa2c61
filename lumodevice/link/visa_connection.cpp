#include "lumodevice/link/visa_connection.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::link {

namespace {

constexpr std::string_view kAllInstruments = "?*INSTR";
constexpr std::string_view kIdentityQuery = "*IDN?\r";
constexpr std::size_t kIdentitySize = 72;
constexpr std::uint32_t kOpenTimeout = 1;
constexpr std::int32_t kVisaComOpenTimeout = 2000;
constexpr int kHourglass = 11;
constexpr int kArrow = 1;

using Attribute = std::pair<io::ViAttr, std::uint32_t>;
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

VisaConnection::VisaConnection(Link& link, ChannelList& channels)
    : link_(link), channels_(channels) {
  toolkit::handle(link_.form.cmdAutoConnVISA.click, [this] { AutoConnect(); });
  toolkit::handle(link_.form.cmdConnVISA.click, [this] { Connect(); });
  toolkit::handle(link_.form.optVISA.click, [this] { SelectVisa(); });
}

void VisaConnection::AutoConnect() {
  toolkit::Form& panel = link_.form.panel;
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
  form::Controls& form = link_.form;
  for (toolkit::ListBox* list : {&form.List1, &form.List2, &form.List3}) {
    list->clear();
  }
  link_.linkName = kVisa;
  form.cmbVISARes.clear();
  form.cmbVISARes.setTag("");
  form.cmbVISARes.setText("");
  if (!open({std::string(kAllInstruments), 256})) {
    return;
  }
  link_.identity = form.txtReturn.text();
  if (link_.identity.empty()) {
    channels_.NotConnect();
    return;
  }
  channels_.linkUp();
  channels_.ParseIdentity();
  attempt([&] { channels_.RefreshChannelList(); });
}

void VisaConnection::Connect() {
  form::Controls& form = link_.form;
  link_.linkName = kVisa;
  form.cmbVISARes.setTag("");
  if (!open({std::string(form.cmbVISARes.text()), 255})) {
    return;
  }
  if (form.txtReturn.text().empty()) {
    channels_.NotConnect();
    return;
  }
  channels_.linkUp();
  attempt([&] { channels_.RefreshChannelList(); });
}

bool VisaConnection::open(const Search& search) {
  link_.bDevAvaliable = false;
  if (!probe(search)) {
    return false;
  }
  // An answer left over from earlier must not pass for the one that this connect waits for.
  link_.form.txtReturn.setText("");
  if (link_.form.optVisa2.value()) {
    attempt([&] { openThroughVisaCom(); });
  } else {
    openThroughLibrary();
  }
  link_.bDevAvaliable = text::contains(link_.form.txtReturn.text(), kProduct);
  return true;
}

bool VisaConnection::probe(const Search& search) {
  io::Visa& visa = link_.host.visa;
  link_.visaStatus = visa.viOpenDefaultRM(link_.resourceManager);
  if (link_.visaStatus < 0) {
    return false;
  }
  std::uint32_t count = 0;
  std::string descriptor;
  link_.visaStatus =
      visa.viFindRsrc(link_.resourceManager, search.expression, link_.findList, count, descriptor);
  if (link_.visaStatus < 0) {
    link_.closeVisaObject(link_.resourceManager);
    return false;
  }
  while (count != 0) {
    probeCandidate(descriptor, search.descriptorSize);
    link_.visaStatus = visa.viFindNext(link_.findList, descriptor);
    --count;
    if (link_.visaStatus < 0) {
      break;  // fewer than promised: asking the last one again would only list it twice
    }
  }
  if (link_.form.cmbVISARes.tag().empty()) {
    link_.closeVisaObject(link_.findList);
    link_.closeVisaObject(link_.resourceManager);
    return false;
  }
  return true;
}

void VisaConnection::probeCandidate(const std::string& descriptor, std::size_t descriptorSize) {
  io::Visa& visa = link_.host.visa;
  link_.visaStatus = visa.viOpen(link_.resourceManager, descriptor, io::VI_EXCLUSIVE_LOCK,
                                 kOpenTimeout, link_.visaSession);
  if (link_.visaStatus < 0) {
    return;
  }
  std::string interfaceName;
  link_.visaStatus =
      visa.viGetAttribute(link_.visaSession, io::VI_ATTR_INTF_INST_NAME, interfaceName);
  if (isOurInterface(interfaceName)) {
    for (const auto& [attribute, value] : kProbeAttributes) {
      setAttribute(attribute, value);
    }
    if (text::contains(readIdentity(), kProduct)) {
      toolkit::ComboBox& resources = link_.form.cmbVISARes;
      resources.addItem(text::Trim(descriptor));
      resources.setTag(padded(descriptor, descriptorSize));
      resources.setText(text::Trim(descriptor));
    }
  }
  link_.closeVisaObject(link_.visaSession);
}

void VisaConnection::openThroughLibrary() {
  io::Visa& visa = link_.host.visa;
  // The tag is padded to its buffer's size; a descriptor ends where its text does.
  link_.visaStatus = visa.viOpen(link_.resourceManager, text::Trim(link_.form.cmbVISARes.tag()),
                                 io::VI_EXCLUSIVE_LOCK, kOpenTimeout, link_.visaSession);
  std::string interfaceName;
  link_.visaStatus =
      visa.viGetAttribute(link_.visaSession, io::VI_ATTR_INTF_INST_NAME, interfaceName);
  for (const auto& [attribute, value] : kLinkAttributes) {
    setAttribute(attribute, value);
  }
  const std::string identity = readIdentity();
  if (!identity.empty()) {
    link_.form.txtReturn.setText(identity);
  }
}

void VisaConnection::openThroughVisaCom() {
  link_.closeVisaObject(link_.findList);
  link_.closeVisaObject(link_.resourceManager);
  link_.resourceManagerObject = link_.host.visaCom.createResourceManager();
  link_.devZAN = link_.host.visaCom.createFormattedIO488();
  link_.devZAN->setIO(link_.resourceManagerObject->Open(text::Trim(link_.form.cmbVISARes.tag()),
                                                        static_cast<std::int32_t>(io::VI_NO_LOCK),
                                                        kVisaComOpenTimeout, ""));
  link_.devZAN->WriteString(kIdentityQuery, true);
  link_.form.txtReturn.setText(link_.devZAN->ReadString());
}

/// Asks the open session; "" when nothing came.
std::string VisaConnection::readIdentity() {
  io::Visa& visa = link_.host.visa;
  std::array<char, kIdentitySize> answer{};
  std::uint32_t count = 0;
  link_.visaStatus = visa.viWrite(link_.visaSession, kIdentityQuery, count);
  count = 0;
  link_.visaStatus = visa.viRead(link_.visaSession, answer, count);
  return {answer.data(), std::min<std::size_t>(count, answer.size())};
}

void VisaConnection::setAttribute(io::ViAttr attribute, std::uint32_t value) {
  link_.visaStatus = link_.host.visa.viSetAttribute(link_.visaSession, attribute, value);
}

void VisaConnection::SelectVisa() {
  form::Controls& form = link_.form;
  if (link_.MSComm1.PortOpen()) {
    link_.closeSerialPort();
    channels_.linkDown();
    channels_.NotConnect();
  }
  form.cmdAuto.setEnabled(false);
  form.Command2.setEnabled(false);
  form.Timer2.setEnabled(false);
  form.cmdAutoConnVISA.setEnabled(true);
  form.cmdConnVISA.setEnabled(true);
}

}  // namespace lumodevice::link
