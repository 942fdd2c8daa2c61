#include "lumodevice/system_host.hpp"

#include <optional>

#include "platform/environment.hpp"
#include "platform/host_parts.hpp"
#include "platform/machine_visa.hpp"
#include "platform/machine_visa_com.hpp"
#include "platform/serial_devices.hpp"
#include "platform/system_clock.hpp"

namespace lumodevice {

namespace {

std::optional<std::string> visaLibrary(const SystemOptions& options) {
  return options.visaLibrary.empty() ? platform::chosenVisaLibrary(platform::processVariable)
                                     : options.visaLibrary;
}

/// The parts of the host, each above those that use it.
struct System {
  explicit System(const SystemOptions& options)
      : visa(visaLibrary(options)),
        visaCom(platform::machineVisaCom(visa)),
        serialDevices(platform::machineSerialDevices(options.ports)),
        drive(platform::driveIn(options.driveC)) {}

  toolkit::RealTimeLoop loop;
  platform::MachineVisa visa;
  std::unique_ptr<io::VisaCom> visaCom;
  std::unique_ptr<platform::MachineSerialDevices> serialDevices;
  std::unique_ptr<io::Drive> drive;
  platform::SystemWallClock wallClock;
};

}  // namespace

Host systemHost(const SystemOptions& options) {
  const auto system = std::make_shared<System>(options);
  return {.loop = options.loop != nullptr ? *options.loop : system->loop,
          .visa = system->visa,
          .visaCom = *system->visaCom,
          .serialDevices = *system->serialDevices,
          .drive = *system->drive,
          .wallClock = system->wallClock,
          .informationBox =
              options.informationBox ? options.informationBox : platform::printInformation,
          .log = options.log,
          .exchanges = options.exchanges,
          .observing = options.observing,
          .address = options.address,
          .owned = system};
}

}  // namespace lumodevice
