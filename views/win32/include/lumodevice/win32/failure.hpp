#pragma once

#include <exception>
#include <functional>

#include "lumodevice/export.hpp"

/// No exception may pass through a window procedure: the system swallows it or ends the program.
/// What the handlers and observers of a form throw while the operator uses a view is handed to a
/// function of the program's own instead; it must not throw.
///
///     const lumodevice::win32::FailureHandler onFailure = [](const std::exception_ptr& failure) {
///       lumodevice::win32::reportFailure(failure);
///       PostQuitMessage(1);
///     };
namespace lumodevice::win32 {

using FailureHandler = std::function<void(const std::exception_ptr& failure)>;

/// Tells the debugger (OutputDebugString) and standard error what it was. The program goes on.
LUMODEVICE_API void reportFailure(const std::exception_ptr& failure) noexcept;

}  // namespace lumodevice::win32
