#include "platform/host_parts.hpp"

#include <iostream>

#include "platform/environment.hpp"
#include "platform/folder_drive.hpp"

namespace lumodevice::platform {

std::unique_ptr<io::Drive> driveIn(const std::string& folder) {
  return std::make_unique<FolderDrive>(folder.empty() ? usualDriveC(processVariable).value_or("")
                                                      : folder);
}

void printInformation(std::string_view text) {
  std::cerr << "[information] " << text << std::endl;
}

}  // namespace lumodevice::platform
