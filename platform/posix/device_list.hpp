#pragma once

#include "platform/device_list.hpp"
#include "platform/posix/device_tree.hpp"

namespace lumodevice::posix {

/// As platform::listDevices, on a machine with these roots.
[[nodiscard]] platform::DeviceList listDevices(const platform::MachineSerialDevices& ports,
                                               const SystemRoots& roots);

/// As platform::permissionAdviceForResource, on a machine with these roots.
[[nodiscard]] std::string permissionAdviceForResource(const std::string& resource,
                                                      const SystemRoots& roots);

}  // namespace lumodevice::posix
