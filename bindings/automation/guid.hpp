#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <windows.h>

namespace lumodevice::automation {

/// The number that stands for "52EF8624-A203-4183-BE58-95F882C3B1A9" and the like.
constexpr GUID guidOf(std::string_view text) {
  const auto number = [&text](std::size_t place, std::size_t digits) {
    std::uint32_t value = 0;
    for (const char digit : text.substr(place, digits)) {
      value =
          value * 16 + static_cast<std::uint32_t>(digit <= '9' ? digit - '0' : digit - 'A' + 10);
    }
    return value;
  };
  GUID guid{number(0, 8),
            static_cast<std::uint16_t>(number(9, 4)),
            static_cast<std::uint16_t>(number(14, 4)),
            {static_cast<std::uint8_t>(number(19, 2)), static_cast<std::uint8_t>(number(21, 2))}};
  for (std::size_t i = 0; i < 6; ++i) {
    guid.Data4[2 + i] = static_cast<std::uint8_t>(number(24 + 2 * i, 2));
  }
  return guid;
}

}  // namespace lumodevice::automation
