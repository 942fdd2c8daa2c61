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
/// reading stops at the first character that cannot continue a number; 0 (never -0) when there is
/// none. Exponents are written with E or D, and one without digits counts as 0. "&H" starts
/// hexadecimal digits, "&O" octal ones, neither with a sign in front: a number within 16 bits is
/// one with its sign (&HFFFF is -1), else it is one of 32 bits; a closing "&" makes it 32-bit
/// (&HFFFF& is 65535). Leading zeros change nothing. A number too small for a double is 0. Throws
/// NumberFault(6) for a number too large for a double or for 32 bits. Takes one pass and no memory
/// from the heap, however long the text is.
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

/// True when the whole of `text` is a number:
/// - digits with an optional "." and, in front of it, "," anywhere behind the first digit;
/// - behind them an exponent: E or D, a sign if need be, and at least one digit;
/// - around them marks, in front or behind, each once: "$", and a sign or a pair of parentheses;
/// - around all of these blanks: U+0020, tab, LF, VT, FF, CR and the no-break space in its UTF-8
/// form
///   (C2 A0; a byte A0 alone is none);
/// - or, without marks, "&H", "&O" or "&" (octal too) with digits within 32 bits and perhaps an
/// "&". A number too large for a double is none. Whatever is a number here, Val reads without a
/// fault.
[[nodiscard]] bool isNumericText(std::string_view text);

/// The nearest whole number, halves to the even one, within 16 bits. Throws NumberFault(6) beyond
/// them and for a NaN.
[[nodiscard]] std::int16_t toWhole16(double value);

/// The same within 32 bits.
[[nodiscard]] std::int32_t toWhole32(double value);

/// A sum of 16 bits that throws NumberFault(6) instead of wrapping.
[[nodiscard]] std::int16_t add16(std::int16_t left, std::int16_t right);

/// A number as plain text: 15 significant digits, "." as the decimal point, no trailing zeros;
/// exponent form ("1E+15", "1E-05") from 1E+15 upwards and below 1E-4; zero of either sign is "0".
/// Val reads it back, except above 1.79769313486231E+308, where 15 digits round up to what no
/// double holds. Throws NumberFault(6) for an infinite number and a NaN: no text would be true of
/// them.
[[nodiscard]] std::string numberText(double value);

/// The same for a single-precision number: 7 significant digits, exponent form from 1E+07 upwards.
[[nodiscard]] std::string singleText(float value);

/// A number with the pattern "###0.###": at least one digit in front of the point (as many as the
/// number has, without separators), at most three behind it, no trailing zeros, no trailing point;
/// halves of the 15 significant digits of numberText go away from zero. "-0" never comes out.
/// Throws NumberFault(6) for an infinite number and a NaN.
[[nodiscard]] std::string formatValue(double value);

}  // namespace lumodevice::text
