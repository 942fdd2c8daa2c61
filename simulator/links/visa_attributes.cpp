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
    {0x3FFF0021, 4, kAny, 9600, On::Serial},  // baud rate
    {0x3FFF0022, 2, 8, 8, On::Serial},        // data bits
    {0x3FFF0023, 2, 4, 0, On::Serial},        // parity
    {0x3FFF0024, 2, 20, 10, On::Serial},      // stop bits, in tenths
    {0x3FFF0025, 2, 7, 0, On::Serial},        // flow control
};

}  // namespace

const VisaAttribute* findAttribute(ViAttr id, const VisaResource& resource) {
  const auto* const found =
      std::find_if(std::begin(kAttributes), std::end(kAttributes), [&](const VisaAttribute& row) {
        return row.id == id &&
               (row.on == On::EverySession || resource.interface == Interface::Serial ||
                (row.on == On::SerialEnds && resource.takesSerialEndModes));
      });
  return found == std::end(kAttributes) ? nullptr : found;
}

bool takesValue(const VisaAttribute& attribute, std::uint32_t& value) {
  if (attribute.most == 1) {
    value = value == 0 ? 0 : 1;
  }
  return value <= attribute.most;
}

}  // namespace zansim
