#include "bindings/automation/text.hpp"

#include <algorithm>
#include <iterator>

namespace lumodevice::automation {

std::u16string toAutomation(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size());
  std::transform(bytes.begin(), bytes.end(), std::back_inserter(text),
                 [](char byte) { return char16_t{static_cast<unsigned char>(byte)}; });
  return text;
}

std::string fromAutomation(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  std::transform(text.begin(), text.end(), std::back_inserter(bytes),
                 [](char16_t unit) { return unit <= 0xFF ? static_cast<char>(unit) : '?'; });
  return bytes;
}

}  // namespace lumodevice::automation
