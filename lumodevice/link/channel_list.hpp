#pragma once

#include <functional>
#include <string_view>

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link.hpp"

namespace lumodevice::link {

/// What stands for an empty slot in the instrument's lists of modules and channels.
inline constexpr std::string_view kEmptySlot = "0";

/// True for the modules that can be joined into channel groups.
[[nodiscard]] bool isGroupCapable(std::string_view module);

/// What follows a connect: who answered, which channels it has, and the look of the panel without a
/// link.
class ChannelList {
 public:
  ChannelList(Link& link, Exchange& exchange) : link_(link), exchange_(exchange) {}

  /// Builds the channel list of an instrument that may have channel groups; used when the firmware
  /// version has a third part. Without it the channels are scanned as single ones.
  std::function<void()> refreshGroups;

  /// Splits the identity into its fields.
  void ParseIdentity();

  /// The connected look: the console may send, the protection frame may be used.
  void linkUp();

  /// The console may not send any more, and the panel shows no channel.
  void linkDown();

  /// Fills cmbChannel and selects the instrument's present channel, when txtReturn holds the
  /// identity of one of our instruments. Throws text::NumberFault and toolkit::PropertyFault for a
  /// channel list or a channel number that makes no sense.
  void RefreshChannelList();

  /// Makes the link state follow the outcome of a serial connect. Throws as RefreshChannelList
  /// does.
  void ApplyConnectResult(bool connected);

  /// The unconnected look of the channel panel. Closes nothing.
  void NotConnect();

 private:
  void ScanChannels();

  Link& link_;
  Exchange& exchange_;
};

}  // namespace lumodevice::link
