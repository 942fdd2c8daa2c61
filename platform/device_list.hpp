#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumodevice::platform {

/// A process that has a device open.
struct DeviceUser {
  int process = 0;
  std::string program;
};

/// Who may use a device.
struct DeviceAccess {
  std::string owner;  ///< a name, or the number of a user without one; "" for what has no owner
  std::string group;
  unsigned mode = 0;     ///< the permission bits
  bool allowed = false;  ///< this process may read and write it
};

/// A device that an instrument can be behind.
struct ListedDevice {
  int port = 0;      ///< n of the COMn that stands for it; 0: none does
  std::string path;  ///< "/dev/ttyUSB0"
  std::string byId;  ///< the name that stays when it is plugged in elsewhere; "" where it has none
  std::string product;   ///< what it calls itself; may be ""
  std::string resource;  ///< of a USBTMC device: "USB0::0xVVVV::0xPPPP::SERIAL::INSTR"
  std::optional<DeviceAccess> access = {};  ///< none where the device is not there
  std::vector<DeviceUser> users = {};
};

struct DeviceList {
  std::vector<ListedDevice> serial;
  std::vector<ListedDevice> usbtmc;
  /// False where the system does not tell what the processes of other users have open.
  bool allUsersSeen = true;
};

class MachineSerialDevices;

/// The devices of this machine: first those that COM1 to COM16 stand for in `ports`, whether they
/// are there or not, then the other serial ones; and the USBTMC instruments. Opens none of them.
[[nodiscard]] DeviceList listDevices(const MachineSerialDevices& ports);

/// What has to be done before this user may open the device: "add yourself to the dialout group".
[[nodiscard]] std::string permissionAdvice(const std::string& path);

/// The same for the USBTMC device of that resource name; "" when no such device is there.
[[nodiscard]] std::string permissionAdviceForResource(const std::string& resource);

}  // namespace lumodevice::platform
