#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Paths from and to texts, which are UTF-8 on every system. (What std::filesystem makes of a plain
/// text depends on the system.)
namespace lumodevice::platform {

[[nodiscard]] std::filesystem::path pathOf(std::string_view text);
[[nodiscard]] std::string textOf(const std::filesystem::path& path);

}  // namespace lumodevice::platform
