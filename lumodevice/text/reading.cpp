#include "lumodevice/text/reading.hpp"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace lumodevice::text {
namespace {

// Larger than any count of digits in memory can make good, small enough to calculate with.
constexpr std::int64_t kLargestExponent = 1'000'000'000'000'000;

// The largest double is below 10^309; the smallest above zero is 4.9E-324, and half of it rounds to
// zero.
constexpr std::int64_t kMostPlaces = 309;
constexpr std::int64_t kFewestPlaces = -323;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The value of a digit of the bases up to 16; 16 for any other character.
unsigned digitValue(char c) {
  if (isDigit(c)) return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
  return 16;
}

}  // namespace

bool Decimal::readDigits(Cursor& cursor) {
  bool any = false;
  for (; isDigit(cursor.peek()); cursor.skip(1)) {
    addDigit(cursor.peek());
    any = true;
  }
  hasDigits_ = hasDigits_ || any;
  return any;
}

void Decimal::addDigit(char digit) {
  const bool leadingZero = count_ == 0 && digit == '0';
  const bool keep = !leadingZero && count_ < kKeptDigits;
  if (keep) kept_[count_++] = digit;
  if (!keep && !leadingZero) {
    droppedNonZero_ = droppedNonZero_ || digit != '0';
    if (!behindPoint_) ++pointShift_;
  }
  if (behindPoint_ && (keep || leadingZero)) --pointShift_;
}

bool Decimal::readExponent(Cursor& cursor) {
  if (cursor.takeAnyOf("eEdD") == '\0') return true;
  const bool negative = cursor.takeAnyOf("+-") == '-';
  const bool any = isDigit(cursor.peek());
  for (; isDigit(cursor.peek()); cursor.skip(1)) {
    exponent_ = std::min(exponent_ * 10 + (cursor.peek() - '0'), kLargestExponent);
  }
  if (negative) exponent_ = -exponent_;
  return any;
}

std::optional<double> Decimal::value() const {
  if (count_ == 0) return 0.0;
  std::int64_t power = pointShift_ + exponent_;
  const std::int64_t places = power + static_cast<std::int64_t>(count_);  // in front of the point
  if (places > kMostPlaces) return std::nullopt;
  if (places < kFewestPlaces) return 0.0;

  std::array<char, kKeptDigits + 16> number;  // the digits, one that stands for the rest, "E-1093"
  char* end = std::copy_n(kept_.data(), count_, number.data());
  if (droppedNonZero_) {
    *end++ = '1';
    --power;
  }
  *end++ = 'E';
  end = std::to_chars(end, number.data() + number.size(), power).ptr;

  double value = 0;
  const auto outcome = std::from_chars(number.data(), end, value);
  if (outcome.ec != std::errc::result_out_of_range) return value;
  return places > 0 ? std::nullopt : std::optional(0.0);
}

std::optional<std::uint64_t> readRadixNumber(Cursor& cursor) {
  if (cursor.takeAnyOf("hH") != '\0') return readRadixDigits(cursor, 16);
  if (cursor.takeAnyOf("oO") != '\0') return readRadixDigits(cursor, 8);
  return std::nullopt;
}

std::optional<std::uint64_t> readRadixDigits(Cursor& cursor, unsigned base) {
  if (digitValue(cursor.peek()) >= base) return std::nullopt;
  std::uint64_t number = 0;
  for (; digitValue(cursor.peek()) < base; cursor.skip(1)) {
    number = std::min(number * base + digitValue(cursor.peek()), kBeyond32Bits);
  }
  return number;
}

}  // namespace lumodevice::text
