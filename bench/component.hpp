#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "platform/builtin/builtin_visa.hpp"
#include "platform/folder_drive.hpp"
#include "platform/posix/serial_devices.hpp"
#include "platform/system_clock.hpp"

namespace bench {

/// A component with real links, on a loop of the caller's.
class Component {
 public:
  explicit Component(lumodevice::toolkit::EventLoop& loop) : Component(loop, nullptr) {}
  /// Whose exchanges run in turn, or interleaved.
  Component(lumodevice::toolkit::EventLoop& loop, lumodevice::Exchanges exchanges)
      : Component(loop, nullptr, nullptr, exchanges) {}
  /// With a drive C: of the caller's.
  Component(lumodevice::toolkit::EventLoop& loop, lumodevice::io::Drive& drive)
      : Component(loop, nullptr, &drive) {}
  /// With a layer between the component and the VISA library.
  Component(lumodevice::toolkit::EventLoop& loop, lumodevice::io::Visa* layer,
            lumodevice::io::Drive* drive = nullptr,
            lumodevice::Exchanges exchanges = lumodevice::Exchanges::Interleaved)
      : zan({.loop = loop,
             .visa = layer == nullptr ? visa_ : *layer,
             .visaCom = visaCom_,
             .serialDevices = serial_,
             .drive = drive == nullptr ? noDrive_ : *drive,
             .wallClock = clock_,
             .informationBox = [](std::string_view) {},
             .exchanges = exchanges}) {}

  lumodevice::platform::BuiltinVisa& visa() { return visa_; }

  template <typename ControlType>
  ControlType& control(std::string_view name) {
    return zan.surface().get<ControlType>(name);
  }

  /// Connects to a loopback socket as an operator does who types its address; false when in vain.
  bool connectTo(std::uint16_t port) {
    control<lumodevice::toolkit::ComboBox>("cmbVISARes")
        .setText("TCPIP0::127.0.0.1::" + std::to_string(port) + "::SOCKET");
    control<lumodevice::toolkit::CommandButton>("cmdConnVISA").click.raise();
    return zan.isConnected();
  }

 private:
  lumodevice::platform::BuiltinVisa visa_;
  lumodevice::io::VisaComOverVisa visaCom_{visa_};
  lumodevice::posix::TermiosDevices serial_;
  lumodevice::platform::FolderDrive noDrive_{"/nonexistent"};
  lumodevice::platform::SystemWallClock clock_;

 public:
  lumodevice::ZANCtrl zan;
};

}  // namespace bench
