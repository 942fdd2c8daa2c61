#include "hosts/zanctl/links.hpp"
#include "hosts/zanctl/machine_serial.hpp"
#include "hosts/zanctl/machine_visa.hpp"
#include "platform/posix/serial_devices.hpp"

namespace zanctl {

namespace {

class RealLinks : public Links {
 public:
  RealLinks(const Options& options, Output& errors)
      : ports_(options.ports),
        virtualTime_(options.virtualTime),
        visa_(options.visaLibrary),
        serialDevices_(std::make_unique<lumodevice::posix::PosixSerialDevices>(options.ports)),
        refusing_(errors) {}

  lumodevice::io::Visa& visa() override { return visa_; }
  lumodevice::io::SerialDevices& serialDevices() override {
    if (virtualTime_) {
      return refusing_;
    }
    return serialDevices_;
  }

  std::string origin(Link link, int port) const override {
    if (link != Link::Serial) {
      return visa_.name();
    }
    const auto named = ports_.find(port);
    return named == ports_.end() ? "this machine" : named->second;
  }

  std::string advice(Link link) const override {
    return link == Link::Serial ? serialDevices_.advice() : visa_.advice();
  }

  bool usedRightly() const override { return !refusing_.asked(); }

 private:
  std::map<int, std::string> ports_;
  bool virtualTime_;
  MachineVisa visa_;
  WitnessedSerialDevices serialDevices_;
  RefusingSerialDevices refusing_;
};

}  // namespace

std::unique_ptr<Links> realLinks(const Options& options, Output& errors) {
  return std::make_unique<RealLinks>(options, errors);
}

}  // namespace zanctl
