#pragma once

#include <string>
#include <string_view>

#include "platform/path_text.hpp"

namespace zanctl {

/// Texts of this program are UTF-8, those of Windows UTF-16.
[[nodiscard]] inline std::wstring wide(std::string_view text) {
  return lumodevice::platform::pathOf(text).wstring();
}
[[nodiscard]] inline std::string narrow(std::wstring_view text) {
  return lumodevice::platform::textOf(std::wstring(text));
}

}  // namespace zanctl
