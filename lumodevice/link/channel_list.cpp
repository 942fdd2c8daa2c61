#include "lumodevice/link/channel_list.hpp"

#include <cstdint>
#include <string>

#include "lumodevice/form/tables.hpp"
#include "lumodevice/text/text.hpp"

namespace lumodevice::link {

namespace {

constexpr double kScanUnits = 5;

}  // namespace

bool isGroupCapable(std::string_view module) {
  return text::contains(module, "2040") || text::contains(module, "2041");
}

void ChannelList::ParseIdentity() {
  IdentityFields& fields = link_.identityFields;
  fields = {};
  const auto parts = text::Split(link_.identity, ',');
  if (parts.size() < 4) {
    return;
  }
  fields.maker = parts[0];
  fields.model = parts[1];
  fields.serialNumber = parts[2];
  fields.firmwareVersion = parts[3];
  const auto version = text::Split(fields.firmwareVersion, '.');
  if (version.size() < 2) {
    return;
  }
  for (std::size_t i = 0; i < fields.versionParts.size() && i < version.size(); ++i) {
    fields.versionParts[i] = version[i];
  }
}

void ChannelList::linkUp() {
  link_.form.cmdSendCmd.setEnabled(true);
  link_.form.fraOverChk.setEnabled(true);
}

void ChannelList::linkDown() {
  link_.form.cmdSendCmd.setEnabled(false);
  link_.panelState = kNotConnected;
}

void ChannelList::RefreshChannelList() {
  toolkit::ComboBox& channels = link_.form.cmbChannel;
  link_.panelState = kConnected;
  channels.clear();
  if (!text::contains(link_.form.txtReturn.text(), kProduct)) {
    return;
  }
  if (refreshGroups && !link_.identityFields.versionParts[2].empty()) {
    refreshGroups();
  } else {
    ScanChannels();
  }
  exchange_.runCommand("");
  const std::string channel = exchange_.query(":CHAN?");
  if (channel.empty()) {
    channels.setText("CH1");
  } else {
    channels.setListIndex(text::toWhole32(text::Val(channel) - 1));
  }
}

void ChannelList::ScanChannels() {
  form::Controls& form = link_.form;
  form.Text2.setText("*RDT?");
  exchange_.Send();
  link_.processEvents();
  link_.waitUnits(kScanUnits);
  link_.processEvents();
  form.List1.clear();
  if (form.txtReturn.text().empty()) {
    return;
  }
  std::int16_t channel = 0;
  for (const std::string& module : text::Split(form.txtReturn.text(), ',')) {
    if (module == kEmptySlot) {
      continue;
    }
    channel = text::add16(channel, 1);
    const std::string name = "CH" + std::to_string(channel);
    form.cmbChannel.addItem(std::string(name).append("-").append(module));
    if (isGroupCapable(module)) {
      form.List1.addItem(name);
    }
  }
  form.cmdParalle.setEnabled(false);
  form.List3.setVisible(false);
  form.lblConcate(2).setVisible(false);
}

void ChannelList::ApplyConnectResult(bool connected) {
  if (connected) {
    linkUp();
    RefreshChannelList();
  } else {
    linkDown();
    NotConnect();
  }
}

void ChannelList::NotConnect() {
  form::Controls& form = link_.form;
  form.FrameCCStatic.setVisible(true);
  for (toolkit::Frame* frame :
       {&form.fraCCDynamic, &form.fraCRDynamic, &form.FrameCRStatic, &form.FrameCV}) {
    frame->setVisible(false);
  }
  form.FrameCCStatic.setEnabled(false);
  form.FrameCCStatic.moveTo(form::kModeFramePlace.left, form::kModeFramePlace.top);
  form.txtPower(0).setText("");
  form.txtVoltage(0).setText("");
  form.txtCurrent(0).setText("");
  form.fraOverChk.setEnabled(false);
}

}  // namespace lumodevice::link
