#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "platform/folder_drive.hpp"
#include "platform/system_clock.hpp"
#include "tests/platform/temporary_folder.hpp"
#include "tests/support/panel_hand.hpp"

namespace lumodevice::end_to_end {

/// A component as a host makes it, over a VISA library and serial ports that really open something.
class RealPanel : public support::PanelHand {
 public:
  /// Drive C: is a folder of its own. All three must outlive it.
  RealPanel(toolkit::EventLoop& loop, io::Visa& visa, io::SerialDevices& serialDevices);

  [[nodiscard]] ZANCtrl& zan() override { return component_; }

  /// A file of "C:\\temp"; none when it is not there.
  [[nodiscard]] std::optional<std::string> file(const std::string& name) const;
  [[nodiscard]] const posix::TemporaryFolder& driveC() const { return folder_; }
  void putFile(const std::string& name, std::string_view bytes) const;

  /// The information boxes since the last time, one a line.
  std::string boxes();

  /// What the panel says of the link: "not connected", or its kind and the channels.
  [[nodiscard]] std::string state();

 private:
  std::vector<std::string> boxes_;
  io::VisaComOverVisa visaCom_;
  posix::TemporaryFolder folder_;
  platform::FolderDrive drive_{folder_.path()};
  platform::SystemWallClock wallClock_;
  ZANCtrl component_;
};

inline constexpr const char* kUnanswered = "Error:Device has not sent back some data yet!";

}  // namespace lumodevice::end_to_end
