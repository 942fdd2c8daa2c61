#pragma once

#include <string>

namespace lumodevice::automation {

/// The interface of the control in the language of the type library's compiler, written from the
/// tables of its members and records.
[[nodiscard]] std::string interfaceDefinition();

}  // namespace lumodevice::automation
