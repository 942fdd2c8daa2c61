#pragma once

#include <exception>
#include <functional>

#include "lumodevice/export.hpp"

/// No exception may pass through Qt. What the handlers and observers of a form throw while Qt has
/// called them (a click of the operator, a timer's tick) is handed to a function of the program's
/// own instead; it must not throw.
///
///     const lumodevice::qt::FailureHandler onFailure = [](const std::exception_ptr& failure) {
///       lumodevice::qt::reportFailure(failure);
///       std::exit(1);
///     };
namespace lumodevice::qt {

using FailureHandler = std::function<void(const std::exception_ptr& failure)>;

/// Says on Qt's log (qCritical) what it was. The program goes on.
LUMODEVICE_API void reportFailure(const std::exception_ptr& failure) noexcept;

}  // namespace lumodevice::qt
