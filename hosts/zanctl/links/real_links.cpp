#include "hosts/zanctl/links/links.hpp"
#include "hosts/zanctl/links/serial_witness.hpp"
#include "hosts/zanctl/links/visa_witness.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "platform/serial_devices.hpp"

namespace zanctl {

namespace {

class RealLinks : public Links {
 public:
  RealLinks(const LinkOptions& options, Output& errors)
      : virtualTime_(options.virtualTime),
        visa_(options.visaLibrary),
        devices_(lumodevice::platform::machineSerialDevices(options.ports)),
        witnessed_(*devices_),
        refusing_(errors) {}

  [[nodiscard]] lumodevice::io::Visa& visa() override { return visa_; }
  [[nodiscard]] lumodevice::io::SerialDevices& serialDevices() override {
    if (virtualTime_) {
      return refusing_;
    }
    return witnessed_;
  }

  [[nodiscard]] std::string origin(Link link, int port) const override {
    return link == Link::Serial ? devices_->deviceOf(port) : visa_.name();
  }

  [[nodiscard]] std::string advice(Link link) const override {
    return link == Link::Serial ? witnessed_.advice() : visa_.advice();
  }

  [[nodiscard]] lumodevice::platform::DeviceList devices() override {
    return lumodevice::platform::listDevices(*devices_);
  }

  [[nodiscard]] bool usedRightly() const override { return !refusing_.asked(); }

 private:
  bool virtualTime_;
  WitnessedVisa visa_;
  std::unique_ptr<lumodevice::platform::MachineSerialDevices> devices_;
  WitnessedSerialDevices witnessed_;
  RefusingSerialDevices refusing_;
};

}  // namespace

std::unique_ptr<Links> realLinks(const LinkOptions& options, Output& errors) {
  try {
    return std::make_unique<RealLinks>(options, errors);
  } catch (const lumodevice::io::IoFault& fault) {
    throw Unusable(fault.what());
  }
}

}  // namespace zanctl
