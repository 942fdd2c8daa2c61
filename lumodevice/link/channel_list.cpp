#include "lumodevice/link/channel_list.hpp"

#include <cstdint>
#include <string>

#include "lumodevice/text/text.hpp"

namespace lumodevice::link {

namespace {

constexpr double kScanUnits = 5;

}  // namespace

bool isGroupCapable(std::string_view module) {
  return text::contains(module, "2040") || text::contains(module, "2041");
}

void ChannelList::linkUp() {
  state_.up();
  callbacks.showConnected();
}

void ChannelList::RefreshChannelList() {
  toolkit::ComboBox& channels = form_.cmbChannel;
  state_.showNoChannel();
  channels.clear();
  if (!readsBack || !text::contains(form_.txtReturn.text(), kProduct)) {
    return;
  }
  if (callbacks.refreshGroups && !identity_.fields().versionParts[2].empty()) {
    callbacks.refreshGroups();
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
  exchange_.sendAndWait("*RDT?", kScanUnits);
  callbacks.forgetFreeChannels();
  if (form_.txtReturn.text().empty()) {
    return;
  }
  std::int16_t channel = 0;
  for (const std::string& module : text::Split(form_.txtReturn.text(), ',')) {
    if (module == kEmptySlot) {
      continue;
    }
    channel = text::add16(channel, 1);
    const std::string name = "CH" + std::to_string(channel);
    form_.cmbChannel.addItem(std::string(name).append("-").append(module));
    if (isGroupCapable(module)) {
      callbacks.addFreeChannel(name);
    }
  }
  callbacks.showNoGroups();
}

void ChannelList::ApplyConnectResult(bool connected) {
  if (connected) {
    linkUp();
    RefreshChannelList();
  } else {
    state_.down();
    NotConnect();
  }
}

}  // namespace lumodevice::link
