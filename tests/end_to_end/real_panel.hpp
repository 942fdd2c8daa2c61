#pragma once

#include <string>
#include <vector>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "platform/posix/folder_drive.hpp"
#include "platform/posix/system_clock.hpp"
#include "tests/support/panel_hand.hpp"

namespace lumodevice::end_to_end {

/// A component as a host makes it, over a VISA library and serial ports that really open something.
class RealPanel : public support::PanelHand {
 public:
  /// Without a drive C:. All three must outlive it.
  RealPanel(toolkit::EventLoop& loop, io::Visa& visa, io::SerialDevices& serialDevices);

  [[nodiscard]] ZANCtrl& zan() override { return component_; }

  /// The information boxes since the last time, one a line.
  std::string boxes();

  /// What the panel says of the link: "not connected", or its kind and the channels.
  [[nodiscard]] std::string state();

 private:
  std::vector<std::string> boxes_;
  io::VisaComOverVisa visaCom_;
  posix::FolderDrive drive_{"/nowhere"};
  posix::SystemWallClock wallClock_;
  ZANCtrl component_;
};

inline constexpr const char* kUnanswered = "Error:Device has not sent back some data yet!";

}  // namespace lumodevice::end_to_end
