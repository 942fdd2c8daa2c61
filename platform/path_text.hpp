#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Paths from and to texts, which are UTF-8 on every system. (What std::filesystem makes of a plain
/// text depends on the system.)
namespace lumodevice::platform {

[[nodiscard]] inline std::filesystem::path pathOf(std::string_view text) {
  return std::u8string(text.begin(), text.end());
}

[[nodiscard]] inline std::string textOf(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace lumodevice::platform
