#pragma once

#include <cstdint>
#include <string_view>

#include "lumodevice/form/controls.hpp"

namespace lumodevice::link {

/// Link names: the transport that carries commands.
inline constexpr std::string_view kVisa = "VISA";
inline constexpr std::string_view kSerial = "RS232";
/// Known to the send operation, set by no connect: commands over it go nowhere.
inline constexpr std::string_view kGpib = "GPIB";

enum PanelState : std::int32_t {
  kNotConnected = 0,
  kConnected = 1,        ///< the panel does not show a channel yet
  kLoadedAutoQuery = 2,  ///< the panel shows a channel, auto query on
  kLoaded = 3,           ///< the same, auto query off
};

/// Whether there is a link, which one, and how far the panel has come with it. Everyone may look;
/// who may change what stands beside each function.
class LinkState {
 public:
  explicit LinkState(form::Controls& form) : form_(form) {}

  /// The connected flag: the enabled state of cmdSendCmd, which an operator sees too.
  [[nodiscard]] bool connected() const { return form_.cmdSendCmd.enabled(); }
  [[nodiscard]] std::string_view linkName() const { return linkName_; }
  [[nodiscard]] PanelState panelState() const { return panelState_; }
  [[nodiscard]] bool bDevAvaliable() const { return bDevAvaliable_; }

  /// Grows whenever the link may have become another one, or none: what was sent before has no
  /// answer any more.
  [[nodiscard]] std::uint64_t changes() const { return changes_; }

  /// A connect begins, or an operator chooses the other kind of link. One that is begun inside the
  /// waits of another one wins: the other one sees by its number that it is not the latest, and
  /// ends without touching anything more.
  [[nodiscard]] std::uint64_t beginConnect() { return ++connects_; }
  [[nodiscard]] bool isLatest(std::uint64_t connect) const { return connect == connects_; }

  /// One of the names above, or none. By the connects, at their beginning, and by the end.
  void setLinkName(std::string_view name) {
    linkName_ = name;
    ++changes_;
  }

  /// By the connects, and by the host.
  void setDevAvaliable(bool available) { bDevAvaliable_ = available; }

  /// The console may send. By the channel list, after a connect.
  void up() {
    ++changes_;
    form_.cmdSendCmd.setEnabled(true);
  }

  /// The console may not send any more, and the panel shows no channel. By whoever closes the link.
  void down() {
    ++changes_;
    form_.cmdSendCmd.setEnabled(false);
    panelState_ = kNotConnected;
  }

  /// Connected, and no channel is shown. By the channel list.
  void showNoChannel() { panelState_ = kConnected; }

  /// The panel shows a channel, where there is a link. By the channel selection and the auto query.
  void showChannel(bool autoQuery) {
    const PanelState loaded = autoQuery ? kLoadedAutoQuery : kLoaded;
    panelState_ = connected() ? loaded : kNotConnected;
  }

 private:
  form::Controls& form_;
  std::string_view linkName_;
  PanelState panelState_ = kNotConnected;
  bool bDevAvaliable_ = false;
  std::uint64_t changes_ = 0;
  std::uint64_t connects_ = 0;
};

}  // namespace lumodevice::link
