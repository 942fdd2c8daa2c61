#include "hosts/zanctl/output/escape.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

namespace {

struct Short {
  char letter;
  char byte;
};
constexpr std::array kShorts = {Short{'n', '\n'}, Short{'r', '\r'}, Short{'t', '\t'},
                                Short{'\\', '\\'}, Short{'"', '"'}};

constexpr unsigned char kLastPlain = 0x7E;

std::uint8_t code(char byte) {
  return static_cast<std::uint8_t>(byte);
}

void appendEscaped(std::string& out, char byte) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto* const known =
      std::ranges::find_if(kShorts, [&](const Short& s) { return s.byte == byte && byte != '"'; });
  if (known != kShorts.end()) {
    out += {'\\', known->letter};
  } else if (code(byte) < ' ' || code(byte) > kLastPlain) {
    out += {'\\', 'x', kDigits[code(byte) >> 4U], kDigits[code(byte) & 0xFU]};
  } else {
    out += byte;
  }
}

/// The length of the UTF-8 character of more than one byte at the start of `text`; 0 when there
/// stands none that is well-formed (a shortest form, no surrogate) and printable.
std::size_t utf8Length(std::string_view text) {
  const std::uint8_t lead = code(text[0]);
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) {
    return 0;
  }
  std::uint32_t point = lead & (0xFFU >> (length + 1));
  for (const char byte : text.substr(1, length - 1)) {
    if ((code(byte) & 0xC0U) != 0x80U) {
      return 0;
    }
    point = point << 6U | (code(byte) & 0x3FU);
  }
  constexpr std::array<std::uint32_t, 5> kSmallest = {0, 0, 0xA0, 0x800, 0x10000};
  const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
  return point < kSmallest.at(length) || point > 0x10FFFF || surrogate ? 0 : length;
}

/// Well-formed UTF-8 characters and the byte `kept` stand as they are.
std::string withEscapes(std::string_view text, char kept) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    if (length > 0) {
      out += text.substr(0, length);
    } else if (kept != '\0' && text[0] == kept) {
      out += kept;
    } else {
      appendEscaped(out, text[0]);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return out;
}

}  // namespace

std::string escaped(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (const char byte : bytes) {
    appendEscaped(out, byte);
  }
  return out;
}

std::string escapedCaption(std::string_view text) {
  return withEscapes(text, '\0');
}

std::string printable(std::string_view line) {
  return withEscapes(line, '\\');
}

std::size_t columns(std::string_view printed) {
  return static_cast<std::size_t>(
      std::ranges::count_if(printed, [](char byte) { return (code(byte) & 0xC0U) != 0x80U; }));
}

char takeEscape(std::string_view& text) {
  if (text.empty()) {
    throw ScriptMistake("a backslash at the end of the line");
  }
  const auto* const known =
      std::ranges::find_if(kShorts, [&](const Short& s) { return s.letter == text[0]; });
  if (known != kShorts.end()) {
    text.remove_prefix(1);
    return known->byte;
  }
  if (text[0] != 'x') {
    throw ScriptMistake("unknown escape \\" + escaped(text.substr(0, 1)));
  }
  const std::string_view digits = text.substr(1, 2);
  unsigned byte = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
  if (error != std::errc() || end != digits.data() + 2) {
    throw ScriptMistake("\\x needs two hexadecimal digits");
  }
  text.remove_prefix(3);
  return static_cast<char>(byte);
}

}  // namespace zanctl
