#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "lumodevice/text/text.hpp"

namespace lumodevice::text {
namespace {

constexpr int kSignificantDigits = 15;
constexpr int kSingleDigits = 7;

void refuseNonFinite(double value) {
  if (!std::isfinite(value))
    throw NumberFault(kOverflow, "an infinite or undefined number has no text");
}

/// The digits of a number, and how many of them stand in front of the decimal point.
struct Digits {
  std::string digits;
  std::size_t whole = 0;
};

/// The 15 significant digits of a positive number, behind enough zeros for at least one digit in
/// front of the point and one more for a carry.
Digits significantDigits(double magnitude) {
  std::array<char, 32> buffer;  // "d.dddddddddddddde-308": the exponent has its sign always
  const char* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude,
                                  std::chars_format::scientific, kSignificantDigits - 1)
                        .ptr;
  const char* fraction = buffer.data() + 2;
  const char* sign = fraction + kSignificantDigits;
  int exponent = 0;
  std::from_chars(sign + 1, end, exponent);
  if (*sign == '-') exponent = -exponent;

  const auto before = static_cast<std::size_t>(std::max(exponent, 0));
  const auto behind = static_cast<std::size_t>(std::max(-exponent, 0));
  Digits number;
  number.digits.assign(1 + behind, '0');
  number.digits += buffer.front();
  number.digits.append(fraction, kSignificantDigits - 1);
  number.whole = 2 + before;
  return number;
}

/// Cuts the number to `decimals` digits behind the point, halves away from zero.
void roundTo(std::size_t decimals, Digits& number) {
  std::string& digits = number.digits;
  const std::size_t size = number.whole + decimals;
  if (digits.size() <= size) return;
  const bool up = digits[size] >= '5';
  digits.resize(size);
  if (!up) return;
  std::size_t last = digits.find_last_not_of('9');  // the zero in front ends every carry
  ++digits[last];
  while (++last < size) digits[last] = '0';
}

template <typename Number>
std::string plainText(Number value, int digits) {
  refuseNonFinite(value);
  if (value == 0) return "0";
  std::array<char, 32> text;  // "-d.dddddddddddddde-308"
  char* end = std::to_chars(text.data(), text.data() + text.size(), value,
                            std::chars_format::general, digits)
                  .ptr;
  std::replace(text.data(), end, 'e', 'E');
  return {text.data(), end};
}

}  // namespace

std::string numberText(double value) {
  return plainText(value, kSignificantDigits);
}

std::string singleText(float value) {
  return plainText(value, kSingleDigits);
}

std::string formatValue(double value) {
  refuseNonFinite(value);
  constexpr std::size_t kDecimals = 3;

  Digits number = significantDigits(std::abs(value));
  roundTo(kDecimals, number);
  number.digits.resize(std::max(number.digits.size(), number.whole), '0');

  const std::string_view all = number.digits;
  const std::string_view whole = all.substr(0, number.whole);
  const std::string_view decimals = all.substr(number.whole);
  const std::size_t first = std::min(whole.find_first_not_of('0'), whole.size() - 1);
  const std::size_t used = decimals.find_last_not_of('0') + 1;  // npos + 1 is 0

  std::string text(whole.substr(first));
  if (used > 0) text.append(1, '.').append(decimals.substr(0, used));
  return value < 0 && text != "0" ? "-" + text : text;
}

}  // namespace lumodevice::text
