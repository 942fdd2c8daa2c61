#pragma once

#include <utility>

#include "simulator/links/simulated_serial.hpp"
#include "simulator/links/simulated_visa.hpp"
#include "simulator/mainframe.hpp"

namespace zansim {

/// One instrument that is reached over USB by a VISA library, and over a COM port.
struct SimulatedBench {
  /// Not the first port and baud rate that a search tries, so that it has something to search.
  static constexpr int kPort = 3;
  static constexpr int kBaud = 9600;

  /// The clock must outlive the bench. Throws as Mainframe does.
  explicit SimulatedBench(lumodevice::io::Clock& clock, Configuration configuration = {})
      : instrument{Mainframe(std::move(configuration)), {}, {}},
        resources(clock),
        visa(resources),
        serialDevices(clock) {
    resources.addUsual(instrument);
    serialDevices.plug(kPort, instrument, kBaud);
  }
  SimulatedBench(const SimulatedBench&) = delete;
  SimulatedBench& operator=(const SimulatedBench&) = delete;

  Instrument instrument;
  VisaBench resources;
  SimulatedVisa visa;
  SimulatedSerialDevices serialDevices;
};

}  // namespace zansim
