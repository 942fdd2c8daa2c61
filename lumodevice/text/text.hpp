#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/text/fault.hpp"

/// Texts and numbers as the panel understands them. A text is a string of bytes: one byte is one
/// character on the wire. No function here depends on a locale.
namespace lumodevice::text {

/// A number that does not fit where it is meant to go (number 6), or an argument that has no
/// meaning (5).
class NumberFault : public Fault {
 public:
  using Fault::Fault;
};

inline constexpr int kInvalidArgument = 5;
inline constexpr int kOverflow = 6;

/// The number at the start of `text`. Blanks, tabs and line feeds are skipped wherever they stand;
/// reading stops at the first character that cannot continue a number; 0 when there is none.
/// Exponents are written with E or D; "&H" starts hexadecimal digits, "&O" octal ones: up to four
/// hex digits are a 16-bit number with its sign, up to eight a 32-bit one; a closing "&" makes it
/// 32-bit. Throws NumberFault(6) for a number too large for a double or for 32 bits.
[[nodiscard]] double Val(std::string_view text);

/// Without the blanks (U+0020 alone) at both ends.
[[nodiscard]] std::string Trim(std::string_view text);

/// The first `count` characters, or all when there are fewer. Throws NumberFault(5) for a negative
/// count.
[[nodiscard]] std::string Left(std::string_view text, std::int64_t count);

/// The last `count` characters, or all when there are fewer. Throws NumberFault(5) for a negative
/// count.
[[nodiscard]] std::string Right(std::string_view text, std::int64_t count);

/// `count` characters from position `start` (counting from 1); "" when `start` lies beyond the end.
/// Throws NumberFault(5) for a start below 1 or a negative count.
[[nodiscard]] std::string Mid(std::string_view text, std::int64_t start, std::int64_t count);

/// The parts between the separators, at least one; but no part at all for an empty text.
[[nodiscard]] std::vector<std::string> Split(std::string_view text, char separator);

/// True when `text` holds `part` (case-sensitive; every text holds the empty one).
[[nodiscard]] bool contains(std::string_view text, std::string_view part);

/// True when the whole of `text` is a number: blanks around it, one sign (in front or behind),
/// digits with an optional "." and thousands separators, an exponent, a currency sign, a number in
/// parentheses,
/// "&H" and "&O" numbers. A number that no double can hold is none.
[[nodiscard]] bool isNumericText(std::string_view text);

/// The nearest whole number, halves to the even one, within 16 bits. Throws NumberFault(6) beyond
/// them.
[[nodiscard]] std::int16_t toWhole16(double value);

/// The same within 32 bits.
[[nodiscard]] std::int32_t toWhole32(double value);

/// 16-bit arithmetic that throws NumberFault(6) instead of wrapping.
[[nodiscard]] std::int16_t add16(std::int16_t left, std::int16_t right);
[[nodiscard]] std::int16_t subtract16(std::int16_t left, std::int16_t right);
[[nodiscard]] std::int16_t multiply16(std::int16_t left, std::int16_t right);

/// A number as plain text: 15 significant digits, "." as the decimal point, no trailing zeros;
/// exponent form ("1E+15", "1E-05") from 1E+15 upwards and below 1E-4.
[[nodiscard]] std::string numberText(double value);

}  // namespace lumodevice::text
