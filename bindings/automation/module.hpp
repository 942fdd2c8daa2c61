#pragma once

#include <string>
#include <windows.h>

/// The file that this code was loaded from.
namespace lumodevice::automation::module {

/// Whoever is kept alive by the file being loaded: objects, and locks on the server.
void hold();
void release();
[[nodiscard]] bool isHeld();

[[nodiscard]] HINSTANCE instance();
/// The path of the file, in full.
[[nodiscard]] std::wstring path();

}  // namespace lumodevice::automation::module
