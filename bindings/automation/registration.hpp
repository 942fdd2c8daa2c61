#pragma once

#include <windows.h>

namespace lumodevice::automation {

/// Whose programs find the control. Only an administrator can register it for all.
enum class Scope { Machine, User };

/// Tells the system of the control in this file. Again is no mistake: the file may have moved.
[[nodiscard]] HRESULT registerControl(Scope scope);

/// Takes back what registerControl() wrote, and nothing else: the control of the other word width,
/// registered from a file of its own, stays. Nothing to take back is no mistake.
[[nodiscard]] HRESULT unregisterControl(Scope scope);

}  // namespace lumodevice::automation
