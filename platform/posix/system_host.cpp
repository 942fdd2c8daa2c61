#include "platform/posix/system_host.hpp"

#include <iostream>
#include <optional>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "lumodevice/link/host.hpp"
#include "platform/posix/environment.hpp"
#include "platform/posix/folder_drive.hpp"
#include "platform/posix/machine_visa.hpp"
#include "platform/posix/serial_devices.hpp"
#include "platform/posix/system_clock.hpp"

namespace lumodevice {

namespace posix {

std::unique_ptr<io::Drive> driveIn(const std::string& folder) {
  return std::make_unique<FolderDrive>(folder.empty() ? usualDriveC(processVariable).value_or("")
                                                      : folder);
}

void printInformation(std::string_view text) {
  std::cerr << "[information] " << text << std::endl;
}

}  // namespace posix

namespace {

std::optional<std::string> visaLibrary(const SystemOptions& options) {
  return options.visaLibrary.empty() ? posix::chosenVisaLibrary(posix::processVariable)
                                     : options.visaLibrary;
}

/// The parts of the host, each above those that use it.
struct System {
  explicit System(const SystemOptions& options)
      : visa(visaLibrary(options)),
        serialDevices(options.ports),
        drive(posix::driveIn(options.driveC)) {}

  toolkit::RealTimeLoop loop;
  posix::MachineVisa visa;
  io::VisaComOverVisa visaCom{visa};
  posix::TermiosDevices serialDevices;
  std::unique_ptr<io::Drive> drive;
  posix::SystemWallClock wallClock;
};

}  // namespace

Host Host::system(const SystemOptions& options) {
  const auto system = std::make_shared<System>(options);
  return {
      .loop = options.loop != nullptr ? *options.loop : system->loop,
      .visa = system->visa,
      .visaCom = system->visaCom,
      .serialDevices = system->serialDevices,
      .drive = *system->drive,
      .wallClock = system->wallClock,
      .informationBox = options.informationBox ? options.informationBox : posix::printInformation,
      .log = options.log,
      .owned = system};
}

}  // namespace lumodevice
