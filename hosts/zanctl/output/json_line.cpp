#include "hosts/zanctl/output/json_line.hpp"

#include <cstdint>

#include "lumodevice/text/text.hpp"

namespace zanctl {

std::string jsonLine(const Json& object) {
  constexpr int kOneLine = -1;
  constexpr char kNoIndent = ' ';
  constexpr bool kAscii = true;
  return object.dump(kOneLine, kNoIndent, kAscii, Json::error_handler_t::replace);
}

Json wireText(std::string_view bytes) {
  constexpr std::uint8_t kFirstOfTwo = 0x80;
  std::string utf8;
  for (const char byte : bytes) {
    const auto code = static_cast<std::uint8_t>(byte);
    if (code < kFirstOfTwo) {
      utf8 += byte;
    } else {
      utf8 += static_cast<char>(0xC0U | code >> 6U);
      utf8 += static_cast<char>(0x80U | (code & 0x3FU));
    }
  }
  return utf8;
}

Json wireNumber(std::string_view text) {
  const std::string number = lumodevice::text::Trim(text);
  return lumodevice::text::isNumericText(number) ? Json(lumodevice::text::Val(number)) : Json();
}

}  // namespace zanctl
