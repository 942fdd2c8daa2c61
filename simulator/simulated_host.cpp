#include "lumodevice/simulated_host.hpp"

#include <memory>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "platform/host_parts.hpp"
#include "platform/loop_clock.hpp"
#include "platform/system_clock.hpp"
#include "simulator/simulated_bench.hpp"

namespace lumodevice {

namespace {

zansim::Configuration configurationOf(const SimulatedOptions& options) {
  zansim::Configuration configuration;
  configuration.serial = options.serialNumber;
  if (!options.modules.empty()) {
    configuration.setSlots(options.modules);
  }
  for (const std::string& source : options.sources) {
    configuration.setSource(source);
  }
  configuration.numberedReadings = options.numberedReadings;
  return configuration;
}

/// Null where the host brings its own.
std::unique_ptr<toolkit::EventLoop> ownLoop(const SimulatedOptions& options) {
  if (options.loop != nullptr) {
    return nullptr;
  }
  if (options.virtualTime) {
    return std::make_unique<toolkit::VirtualLoop>();
  }
  return std::make_unique<toolkit::RealTimeLoop>();
}

/// The parts of the host, each above those that use it.
struct Simulation {
  explicit Simulation(const SimulatedOptions& options)
      : own(ownLoop(options)),
        loop(own ? *own : *options.loop),
        bench(clock, configurationOf(options)),
        drive(platform::driveIn(options.driveC)) {
    for (const std::string& latency : options.latencies) {
      bench.instrument.faults.addLatency(latency);
    }
  }

  std::unique_ptr<toolkit::EventLoop> own;
  toolkit::EventLoop& loop;
  platform::LoopClock clock{loop};
  zansim::SimulatedBench bench;
  io::VisaComOverVisa visaCom{bench.visa};
  std::unique_ptr<io::Drive> drive;
  platform::VirtualWallClock wallClock{clock};
};

}  // namespace

Host simulatedHost(const SimulatedOptions& options) {
  const auto simulation = std::make_shared<Simulation>(options);
  return {.loop = simulation->loop,
          .visa = simulation->bench.visa,
          .visaCom = simulation->visaCom,
          .serialDevices = simulation->bench.serialDevices,
          .drive = *simulation->drive,
          .wallClock = simulation->wallClock,
          .informationBox =
              options.informationBox ? options.informationBox : platform::printInformation,
          .log = options.log,
          .exchanges = options.exchanges,
          .observing = options.observing,
          .address = options.address,
          .owned = simulation};
}

}  // namespace lumodevice
