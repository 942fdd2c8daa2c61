#pragma once

#include <windows.h>

namespace lumodevice::automation {

/// Ends an entry of the control with a result that says why. Never leaves ControlObject::entered().
struct ComFailure {
  HRESULT result;
};

/// Throws a ComFailure for a result that is one.
inline void demand(HRESULT result) {
  if (FAILED(result)) {
    throw ComFailure{result};
  }
}

}  // namespace lumodevice::automation
