#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace lumodevice::text {

/// What the C library makes of a number; `conversion` is a single one for a double, such as
/// "%.15G".
inline std::string printed(double value, const char* conversion) {
  std::array<char, 64> text{};
  const int size = std::snprintf(text.data(), text.size(), conversion, value);
  return {text.data(), static_cast<std::size_t>(size)};
}

}  // namespace lumodevice::text
