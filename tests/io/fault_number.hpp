#pragma once

#include <string>

namespace lumodevice {

/// The number of the fault that `act` throws; 0 when it throws none.
template <typename FaultKind, typename Act>
int faultNumber(Act act, std::string* what = nullptr) {
  try {
    act();
  } catch (const FaultKind& fault) {
    if (what != nullptr) *what = fault.what();
    return fault.number();
  }
  return 0;
}

}  // namespace lumodevice
