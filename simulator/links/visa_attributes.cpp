#include "simulator/links/visa_attributes.hpp"

#include <algorithm>

namespace zansim {
namespace {

using namespace lumodevice::io;
using On = VisaAttribute::On;

constexpr std::uint32_t kAny = 0xFFFFFFFF;

constexpr VisaAttribute kAttributes[] = {
    // id                     width  most  initial
    {VI_ATTR_SEND_END_EN, 2, 1, 1, On::EverySession},
    {VI_ATTR_TERMCHAR, 1, 0xFF, '\n', On::EverySession},
    {VI_ATTR_TMO_VALUE, 4, kAny, 2000, On::EverySession},
    {VI_ATTR_TERMCHAR_EN, 2, 1, 0, On::EverySession},
    {VI_ATTR_ASRL_END_IN, 2, 2, 2, On::SerialEnds},
    {VI_ATTR_ASRL_END_OUT, 2, 3, 0, On::SerialEnds},
    {0x3FFF0021, 4, kAny, 9600, On::Serial},                 // baud rate
    {0x3FFF0022, 2, 8, 8, On::Serial},                       // data bits
    {0x3FFF0023, 2, 4, 0, On::Serial},                       // parity
    {0x3FFF0024, 2, 20, 10, On::Serial},                     // stop bits, in tenths
    {0x3FFF0025, 2, 7, 0, On::Serial},                       // flow control
    {0x3FFF001C, 2, 5, 1, On::EverySession},                 // I/O protocol
    {0x3FFF001E, 2, 1, 0, On::EverySession},                 // direct memory access
    {0x3FFF0036, 2, 1, 0, On::EverySession},                 // END suppressed
    {0x3FFF0005, 4, kAny, 50, On::EverySession},             // longest event queue
    {0x3FFF0003, 4, 0, 0x00100000, On::EverySession, true},  // version of the library: 1.0
    {0x3FFF0170, 4, 0, 0x00700200, On::EverySession, true},  // of the VISA standard: 7.2
    {0x3FFF0175, 2, 0, 0, On::EverySession, true},           // number of the library's maker
    {0x3FFF01A1, 2, 0, 0, On::Usb, true},                    // USB interface
    {0x3FFF019F, 2, 0, 1, On::Usb, true},                    // IEEE 488.2
    {kMakerNumber, 2, 0, 0, On::Usb, true},
    {kModelNumber, 2, 0, 0, On::Usb, true},
    {kAvailable, 4, 0, 0, On::Serial, true},
    {kLockState, 4, 0, 0, On::EverySession, true},
    {kManagerSession, 4, 0, 0, On::EverySession, true},
    {kInterfaceType, 2, 0, 0, On::EverySession, true},
    {kInterfaceNumber, 2, 0, 0, On::EverySession, true},
};

bool has(const VisaResource& resource, On on) {
  switch (on) {
    case On::EverySession:
      return true;
    case On::SerialEnds:
      return resource.interface == Interface::Serial || resource.takesSerialEndModes;
    case On::Serial:
      return resource.interface == Interface::Serial;
    case On::Usb:
      break;
  }
  return resource.interface == Interface::Usb;
}

}  // namespace

const VisaAttribute* findAttribute(ViAttr id, const VisaResource& resource) {
  const auto* const found =
      std::find_if(std::begin(kAttributes), std::end(kAttributes),
                   [&](const VisaAttribute& row) { return row.id == id && has(resource, row.on); });
  return found == std::end(kAttributes) ? nullptr : found;
}

bool takesValue(const VisaAttribute& attribute, std::uint32_t& value) {
  if (attribute.most == 1) {
    value = value == 0 ? 0 : 1;
  }
  return value <= attribute.most;
}

}  // namespace zansim
