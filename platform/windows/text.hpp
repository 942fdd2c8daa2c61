#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Texts are UTF-8 everywhere but in calls of Windows, which take UTF-16.
namespace lumodevice::windows {

/// What is no UTF-8 comes out as the replacement character.
[[nodiscard]] std::wstring wide(std::string_view text);
[[nodiscard]] std::string narrow(std::wstring_view text);

/// What the system says of an error number of GetLastError() or an HRESULT, without a line's end.
[[nodiscard]] std::string errorText(std::uint32_t error);

}  // namespace lumodevice::windows
