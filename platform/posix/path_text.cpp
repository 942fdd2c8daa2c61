#include "platform/path_text.hpp"

namespace lumodevice::platform {

std::filesystem::path pathOf(std::string_view text) {
  return {text};
}

std::string textOf(const std::filesystem::path& path) {
  return path.native();
}

}  // namespace lumodevice::platform
