#pragma once

#include "platform/posix/serial_devices.hpp"
#include "simulator/links/simulated_visa.hpp"
#include "tests/end_to_end/real_panel.hpp"
#include "tests/end_to_end/socket_bench.hpp"
#include "tests/support/scaled_loop.hpp"

namespace lumodevice::end_to_end {

/// A component over a VISA library within the program, with a simulated load on it, in virtual
/// time.
struct SimulatedBench {
  explicit SimulatedBench(Variant variant = Variant::VisaLibrary) {
    resources.addUsual(instrument);
    if (variant == Variant::VisaCom) {
      panel.click("optVisa2");
    }
  }

  toolkit::VirtualLoop loop;
  support::LoopClock clock{loop};
  zansim::Instrument instrument;
  zansim::VisaBench resources{clock};
  zansim::SimulatedVisa visa{resources};
  posix::TermiosDevices devices{{{1, "/nowhere"}}};
  RealPanel panel{loop, visa, devices};
};

}  // namespace lumodevice::end_to_end
