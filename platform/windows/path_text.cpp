#include "platform/path_text.hpp"

#include "platform/windows/text.hpp"

namespace lumodevice::platform {

std::filesystem::path pathOf(std::string_view text) {
  return windows::wide(text);
}

std::string textOf(const std::filesystem::path& path) {
  return windows::narrow(path.native());
}

}  // namespace lumodevice::platform
