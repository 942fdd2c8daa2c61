#include "hosts/zanctl/links.hpp"
#include "simulator/simulated_serial.hpp"
#include "simulator/simulated_visa.hpp"

namespace zanctl {

namespace {

class SimulatedLinks : public Links {
 public:
  explicit SimulatedLinks(lumodevice::io::Clock& clock) : bench_(clock), visa_(bench_) {
    bench_.addUsual(instrument_);
  }

  lumodevice::io::Visa& visa() override { return visa_; }
  lumodevice::io::SerialDevices& serialDevices() override { return serialDevices_; }
  std::string origin(Link, int) const override { return "simulated"; }
  std::string advice(Link) const override { return "the simulated instrument does not answer"; }

 private:
  zansim::Instrument instrument_;
  zansim::VisaBench bench_;
  zansim::SimulatedVisa visa_;
  zansim::SimulatedSerialDevices serialDevices_;
};

}  // namespace

std::unique_ptr<Links> simulatedLinks(lumodevice::io::Clock& clock) {
  return std::make_unique<SimulatedLinks>(clock);
}

}  // namespace zanctl
