#include "platform/host_parts.hpp"

#include <cstdio>
#include <string>

#include "platform/environment.hpp"
#include "platform/folder_drive.hpp"
#include "platform/path_text.hpp"

namespace lumodevice::platform {

std::unique_ptr<io::Drive> driveIn(const std::string& folder) {
  return std::make_unique<FolderDrive>(
      pathOf(folder.empty() ? usualDriveC(processVariable).value_or("") : folder));
}

void printInformation(std::string_view text) {
  const std::string line = "[information] " + std::string(text) + '\n';
  static_cast<void>(std::fwrite(line.data(), 1, line.size(), stderr));
}

}  // namespace lumodevice::platform
