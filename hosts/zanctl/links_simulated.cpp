#include "hosts/zanctl/links.hpp"
#include "simulator/simulated_serial.hpp"
#include "simulator/simulated_visa.hpp"

namespace zanctl {

namespace {

class SimulatedLinks : public Links {
 public:
  explicit SimulatedLinks(lumodevice::io::Clock& clock)
      : bench_(clock), visa_(bench_), serialDevices_(clock) {
    bench_.addUsual(instrument_);
    serialDevices_.plug(kPort, instrument_, kBaud);
  }

  [[nodiscard]] lumodevice::io::Visa& visa() override { return visa_; }
  [[nodiscard]] lumodevice::io::SerialDevices& serialDevices() override { return serialDevices_; }
  [[nodiscard]] std::string origin(Link, int) const override { return "simulated"; }
  [[nodiscard]] std::string advice(Link) const override {
    return "the simulated instrument does not answer";
  }

 private:
  /// Not the first that the search tries, so that it has something to search.
  static constexpr int kPort = 3;
  static constexpr int kBaud = 9600;

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
