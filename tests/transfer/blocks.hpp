#pragma once

#include <string>
#include <string_view>

#include "lumodevice/transfer/working_files.hpp"

namespace lumodevice::transfer {

[[nodiscard]] inline Bytes bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

/// Bytes of every kind, never two neighbours alike: "#", CR, LF and NUL among them.
[[nodiscard]] inline std::string pattern(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) {
    bytes += static_cast<char>((i * 37 + i / 256) & 0xFF);
  }
  return bytes;
}

[[nodiscard]] inline std::string blockOf(std::string_view data) {
  const std::string length = std::to_string(data.size());
  return "#" + std::to_string(length.size()) + length + std::string(data) + '\n';
}

}  // namespace lumodevice::transfer
