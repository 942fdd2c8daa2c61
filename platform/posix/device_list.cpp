#include "platform/posix/device_list.hpp"

#include <algorithm>
#include <charconv>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "platform/posix/serial_devices.hpp"
#include "platform/posix/usbtmc_devices.hpp"
#include "platform/same_name.hpp"

namespace lumodevice::posix {

namespace {

namespace fs = std::filesystem;
using platform::DeviceAccess;
using platform::DeviceList;
using platform::DeviceUser;
using platform::ListedDevice;

constexpr int kPorts = 16;

std::string groupName(gid_t group) {
  const ::group* const entry = ::getgrgid(group);
  return entry == nullptr ? std::to_string(group) : entry->gr_name;
}

std::string userName(uid_t user) {
  const ::passwd* const entry = ::getpwuid(user);
  return entry == nullptr ? std::to_string(user) : entry->pw_name;
}

std::optional<DeviceAccess> accessTo(const std::string& path) {
  constexpr unsigned kPermissions = 07777;
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return std::nullopt;
  return DeviceAccess{
      .owner = userName(info.st_uid),
      .group = groupName(info.st_gid),
      .mode = static_cast<unsigned>(info.st_mode) & kPermissions,
      .allowed = ::faccessat(AT_FDCWD, path.c_str(), R_OK | W_OK, AT_EACCESS) == 0,
  };
}

/// The link in the folder that leads to the device.
std::string linkTo(const std::string& path, const fs::path& folder) {
  std::error_code error;
  const fs::path device = fs::canonical(path, error);
  if (error) return {};
  std::vector<std::string> links;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code dangling;
    if (fs::canonical(entry->path(), dangling) == device && !dangling) {
      links.push_back(entry->path().string());
    }
  }
  return links.empty() ? "" : *std::ranges::min_element(links);
}

/// What the USB device says that a serial device is part of: its port, its interface, the device.
std::string productOf(const std::string& path, const SystemRoots& roots) {
  constexpr int kLevels = 3;
  std::error_code error;
  const std::string name = fs::canonical(path, error).filename();
  fs::path part = fs::canonical(roots.sys / "class" / "tty" / name / "device", error);
  for (int level = 0; !error && level <= kLevels; ++level, part = part.parent_path()) {
    std::string product = cleanedText(firstLine(part / "product"));
    if (!product.empty()) return product;
  }
  return {};
}

/// Which processes have one of the devices open, found by looking at what their descriptors lead
/// to; no device is opened for that.
class Users {
 public:
  explicit Users(const fs::path& proc) {
    for (const std::string& process : numberedEntries(proc, "")) {
      std::error_code error;
      const fs::path descriptors = proc / process / "fd";
      for (fs::directory_iterator entry(descriptors, error), end; !error && entry != end;
           entry.increment(error)) {
        struct stat info {};
        if (::stat(entry->path().c_str(), &info) == 0 && S_ISCHR(info.st_mode)) {
          add(info.st_rdev, process, proc);
        }
      }
      // A process that has ended meanwhile hides nothing.
      allSeen_ = allSeen_ && error != std::errc::permission_denied;
    }
  }

  [[nodiscard]] bool allSeen() const { return allSeen_; }

  [[nodiscard]] std::vector<DeviceUser> of(const std::string& path) const {
    struct stat info {};
    std::vector<DeviceUser> users;
    if (::stat(path.c_str(), &info) != 0 || !S_ISCHR(info.st_mode)) return users;
    for (const Open& open : opened_) {
      if (open.device == info.st_rdev) users.push_back(open.user);
    }
    return users;
  }

 private:
  struct Open {
    dev_t device;
    DeviceUser user;
  };

  void add(dev_t device, const std::string& process, const fs::path& proc) {
    int number = 0;
    std::from_chars(process.data(), process.data() + process.size(), number);
    const bool known = std::ranges::any_of(opened_, [&](const Open& open) {
      return open.device == device && open.user.process == number;
    });
    if (!known) {
      opened_.push_back({device, {number, cleanedText(firstLine(proc / process / "comm"))}});
    }
  }

  std::vector<Open> opened_;
  bool allSeen_ = true;
};

std::string adviceFor(const DeviceAccess& access) {
  return access.group == groupName(0) ? "only " + access.owner + " may use it"
                                      : "add yourself to the " + access.group + " group";
}

}  // namespace

DeviceList listDevices(const platform::MachineSerialDevices& ports, const SystemRoots& roots) {
  const Users users(roots.proc);
  DeviceList list;
  list.allUsersSeen = users.allSeen();
  const auto addSerial = [&](int port, const std::string& path) {
    list.serial.push_back({.port = port,
                           .path = path,
                           .byId = linkTo(path, roots.dev / "serial" / "by-id"),
                           .product = productOf(path, roots),
                           .resource = "",
                           .access = accessTo(path),
                           .users = users.of(path)});
  };
  for (int port = 1; port <= kPorts; ++port) {
    const std::string path = ports.deviceOf(port);
    if (!path.empty()) addSerial(port, path);
  }
  for (const std::string& path : listSerialDevices(roots)) {
    if (std::ranges::find(list.serial, path, &ListedDevice::path) == list.serial.end()) {
      addSerial(0, path);
    }
  }
  for (const UsbtmcDevice& device : listUsbtmcDevices(roots)) {
    const std::string path = device.path.string();
    list.usbtmc.push_back({.port = 0,
                           .path = path,
                           .byId = linkTo(path, roots.dev / "usbtmc" / "by-id"),
                           .product = device.product,
                           .resource = device.descriptor,
                           .access = accessTo(path),
                           .users = users.of(path)});
  }
  return list;
}

std::string permissionAdviceForResource(const std::string& resource, const SystemRoots& roots) {
  for (const UsbtmcDevice& device : listUsbtmcDevices(roots)) {
    const auto access = accessTo(device.path.string());
    if (access && platform::sameName(device.descriptor, resource)) return adviceFor(*access);
  }
  return {};
}

}  // namespace lumodevice::posix

namespace lumodevice::platform {

DeviceList listDevices(const MachineSerialDevices& ports) {
  return posix::listDevices(ports, {});
}

std::string permissionAdvice(const std::string& path) {
  const auto access = posix::accessTo(path);
  return access ? posix::adviceFor(*access) : "it is not there";
}

std::string permissionAdviceForResource(const std::string& resource) {
  return posix::permissionAdviceForResource(resource, {});
}

}  // namespace lumodevice::platform
