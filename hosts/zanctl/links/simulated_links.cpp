#include "hosts/zanctl/links/links.hpp"
#include "simulator/simulated_bench.hpp"

namespace zanctl {

namespace {

class SimulatedLinks : public Links {
 public:
  explicit SimulatedLinks(lumodevice::io::Clock& clock) : bench_(clock) {}

  [[nodiscard]] lumodevice::io::Visa& visa() override { return bench_.visa; }
  [[nodiscard]] lumodevice::io::SerialDevices& serialDevices() override {
    return bench_.serialDevices;
  }
  [[nodiscard]] std::string origin(Link, int) const override { return "simulated"; }
  [[nodiscard]] std::string advice(Link) const override {
    return "the simulated instrument does not answer";
  }
  [[nodiscard]] lumodevice::platform::DeviceList devices() override {
    using Bench = zansim::SimulatedBench;
    lumodevice::platform::DeviceList list;
    list.serial.push_back({.port = Bench::kPort,
                           .path = "simulated",
                           .byId = "",
                           .product = "answers at " + std::to_string(Bench::kBaud) + " baud",
                           .resource = "",
                           .access = {{.owner = "", .group = "", .mode = 0, .allowed = true}}});
    return list;
  }

 private:
  zansim::SimulatedBench bench_;
};

}  // namespace

std::unique_ptr<Links> simulatedLinks(lumodevice::io::Clock& clock) {
  return std::make_unique<SimulatedLinks>(clock);
}

}  // namespace zanctl
