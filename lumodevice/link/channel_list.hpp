#pragma once

#include <functional>
#include <string_view>

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/identity.hpp"

namespace lumodevice::link {

/// What stands for an empty slot in the instrument's lists of modules and channels.
inline constexpr std::string_view kEmptySlot = "0";

/// True for the modules that can be joined into channel groups.
[[nodiscard]] bool isGroupCapable(std::string_view module);

/// What a connect sets going in the rooms that stand on the link; they fill it when the component
/// is put together.
struct ConnectCallbacks {
  /// The connected look: what an operator can use only with a link.
  std::function<void()> showConnected = [] {};
  /// The look of the panel without a link.
  std::function<void()> showUnconnected = [] {};
  /// The channels that can be joined into groups, and the groups, are not known any more.
  std::function<void()> forgetGroups = [] {};
  /// The free channels are about to be named, one by one, those that can be joined into groups.
  std::function<void()> forgetFreeChannels = [] {};
  std::function<void(std::string_view channel)> addFreeChannel = [](std::string_view) {};
  /// The instrument knows no groups.
  std::function<void()> showNoGroups = [] {};
  /// Builds the channel list of an instrument that may have channel groups; used when the firmware
  /// version has a third part. Without it the channels are scanned as single ones.
  std::function<void()> refreshGroups;
};

/// What follows a connect: which channels the instrument has, and the look of the panel with and
/// without a link.
class ChannelList {
 public:
  ChannelList(form::Controls& form, LinkState& state, const Identity& identity, Exchange& exchange)
      : form_(form), state_(state), identity_(identity), exchange_(exchange) {}

  ConnectCallbacks callbacks;
  /// Else a connect leaves the panel as it is.
  bool readsBack = true;

  /// The connected look: the console may send.
  void linkUp();

  /// Fills cmbChannel and selects the instrument's present channel, when txtReturn holds the
  /// identity of one of our instruments. Throws text::NumberFault and toolkit::PropertyFault for a
  /// channel list or a channel number that makes no sense.
  void RefreshChannelList();

  /// Makes the link state follow the outcome of a serial connect. Throws as RefreshChannelList
  /// does.
  void ApplyConnectResult(bool connected);

  /// The unconnected look of the channel panel. Closes nothing.
  void NotConnect() const { callbacks.showUnconnected(); }

 private:
  void ScanChannels();

  form::Controls& form_;
  LinkState& state_;
  const Identity& identity_;
  Exchange& exchange_;
};

}  // namespace lumodevice::link
