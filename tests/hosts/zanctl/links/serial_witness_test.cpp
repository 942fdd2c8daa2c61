#include "hosts/zanctl/links/serial_witness.hpp"

#include <gtest/gtest.h>

namespace zanctl {
namespace {

using namespace lumodevice::io;

/// Has the ports of the map, none of which can be opened, for the reason that stands there.
class RefusedDevices : public SerialDevices {
 public:
  std::map<int, std::string> reasons;
  std::unique_ptr<SerialLine> open(int port, const SerialSettings&) override {
    const auto found = reasons.find(port);
    if (found == reasons.end()) {
      throw SerialFault(kSerialInvalidPort, "no such port");
    }
    throw SerialFault(kSerialUnavailable, found->second);
  }
};

std::string adviceAfterAScan(RefusedDevices& devices) {
  WitnessedSerialDevices witnessed(devices);
  for (int port = 1; port <= 16; ++port) {
    EXPECT_THROW((void)witnessed.open(port, {}), SerialFault);
  }
  return witnessed.advice();
}

constexpr const char* kDenied =
    "cannot open /dev/a: Permission denied; add yourself to the dialout group";

TEST(SerialAdvice, aPermissionAloneNeedsNoOtherDevice) {
  RefusedDevices devices;
  devices.reasons = {{3, kDenied}};
  EXPECT_EQ(adviceAfterAScan(devices), std::string("COM3: ") + kDenied);
}

TEST(SerialAdvice, anotherReasonMayComeFromAWrongName) {
  RefusedDevices devices;
  devices.reasons = {{3, kDenied}, {4, "cannot open /dev/b: No such file or directory"}};
  EXPECT_EQ(adviceAfterAScan(devices),
            std::string("COM3: ") + kDenied +
                "; COM4: cannot open /dev/b: No such file or directory; name the device with "
                "--port COMn=DEVICE");
}

TEST(SerialAdvice, aMachineWithoutPortsNeedsANamedDevice) {
  RefusedDevices devices;
  EXPECT_EQ(adviceAfterAScan(devices),
            "there is no COM port; name the device with --port COMn=DEVICE");
}

}  // namespace
}  // namespace zanctl
