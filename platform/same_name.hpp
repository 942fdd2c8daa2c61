#pragma once

#include <algorithm>
#include <string_view>

namespace lumodevice::platform {

/// True for names that differ at most in the case of ASCII letters, as VISA resources and the names
/// on drive C: may.
[[nodiscard]] inline bool sameName(std::string_view left, std::string_view right) {
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return upper(a) == upper(b); });
}

}  // namespace lumodevice::platform
