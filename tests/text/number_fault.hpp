#pragma once

#include "lumodevice/text/text.hpp"

namespace lumodevice::text {

/// Runs `act` and gives the number of the NumberFault that it throws; 0 when it throws none.
template <typename Act>
int faultOf(Act act) {
  try {
    static_cast<void>(act());
    return 0;
  } catch (const NumberFault& fault) {
    return fault.number();
  }
}

}  // namespace lumodevice::text
