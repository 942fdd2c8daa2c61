#include "lumodevice/link/links.hpp"

namespace lumodevice::link {

Transport* Links::carrying(const LinkState& state, const form::Controls& form) {
  if (state.linkName() == kSerial) {
    return &serial;
  }
  if (state.linkName() != kVisa) {
    return nullptr;
  }
  return form.optVisa2.value() ? static_cast<Transport*>(&visaCom) : &visaLibrary;
}

}  // namespace lumodevice::link
