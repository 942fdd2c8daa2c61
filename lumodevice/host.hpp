#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/io/clock.hpp"
#include "lumodevice/io/drive.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/io/visa.hpp"
#include "lumodevice/io/visa_com.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice {

/// Shows an information box and returns when the operator has put it away.
using InformationBox = std::function<void(std::string_view text)>;

/// How exchanges share the line.
enum class Exchanges {
  /// A tick or a click may fall into the waits of an exchange, and the last writer of the command
  /// and of the answer wins. For hosts that were written for it.
  Interleaved,
  /// Every exchange keeps its own command and its own answer: what goes out is what was asked,
  /// once, and what comes back belongs to it. A late answer is nobody's. The waits are upper
  /// bounds: an exchange returns as soon as its answer is complete.
  InTurn,
};

/// What a host gives the component. systemHost() (lumodevice/system_host.hpp) and simulatedHost()
/// (lumodevice/simulated_host.hpp) make one that is ready; a program that has a part of its own
/// takes such a host apart:
///
///     const lumodevice::Host ready = lumodevice::systemHost();
///     lumodevice::ZANCtrl load({.loop = ready.loop,
///                               .visa = ready.visa,
///                               .visaCom = ready.visaCom,
///                               .serialDevices = myDevices,
///                               .drive = ready.drive,
///                               .wallClock = ready.wallClock,
///                               .informationBox = ready.informationBox,
///                               .exchanges = ready.exchanges,
///                               .owned = ready.owned});
///
/// Everything referred to must outlive the component, unless `owned` keeps it, and is used on the
/// thread that calls the component alone.
struct LUMODEVICE_API Host {
  toolkit::EventLoop& loop;
  io::Visa& visa;
  io::VisaCom& visaCom;
  io::SerialDevices& serialDevices;
  io::Drive& drive;
  io::WallClock& wallClock;
  InformationBox informationBox;
  /// Receives one line for each serial command without an answer; null: nothing is logged.
  std::ostream* log = nullptr;
  /// The ready-made hosts choose InTurn.
  Exchanges exchanges = Exchanges::Interleaved;
  /// The component watches: nothing leaves it but queries and ":CHAN n", which choose the channel
  /// that is shown. Whatever else would be sent is held back and told (ZANCtrl::observeHeldBack).
  /// Can be changed later (ZANCtrl::observing).
  bool observing = false;
  /// The instrument that AutoConnect() connects to, as ZANCtrl::connectTo takes it; "" for any that
  /// it finds.
  std::string address = {};
  /// Keeps alive what is referred to: it goes with the last copy of this host, and each component
  /// holds one. Null where the program sees to that itself.
  std::shared_ptr<void> owned = nullptr;
};

}  // namespace lumodevice
