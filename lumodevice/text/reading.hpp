#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// What reading a number out of a text and testing a text for a number have in common. Used inside
/// text/ alone. Everything here takes one pass over the text and no memory from the heap.
namespace lumodevice::text {

enum class Blanks { skipped, kept };

/// A place in a text. With Blanks::skipped, blanks are as if they were not there; tabs and line
/// ends are no blanks.
class Cursor {
 public:
  Cursor(std::string_view text, Blanks blanks) : rest_(text), blanks_(blanks) { skipBlanks(); }

  [[nodiscard]] bool atEnd() const { return rest_.empty(); }

  /// The character here; NUL at the end (no number continues with a NUL, so readers need no
  /// difference).
  [[nodiscard]] char peek() const { return rest_.empty() ? '\0' : rest_.front(); }

  [[nodiscard]] bool startsWith(std::string_view part) const { return rest_.starts_with(part); }

  /// Moves over `count` characters, which must be there.
  void skip(std::size_t count) {
    rest_.remove_prefix(count);
    skipBlanks();
  }

  /// Moves over one character of `wanted` and returns it; NUL, without a move, when another one is
  /// here.
  char takeAnyOf(std::string_view wanted) {
    const char here = peek();
    if (wanted.find(here) == std::string_view::npos) return '\0';
    skip(1);
    return here;
  }

 private:
  void skipBlanks() {
    if (blanks_ == Blanks::kept) return;
    const std::size_t next = rest_.find_first_not_of(' ');
    rest_.remove_prefix(next == std::string_view::npos ? rest_.size() : next);
  }

  std::string_view rest_;
  Blanks blanks_;
};

/// A decimal number without its sign, read digit by digit; it may have any number of digits.
class Decimal {
 public:
  /// Reads a run of digits, which may be empty; true when it is not.
  bool readDigits(Cursor& cursor);

  /// The digits read from now on stand behind the decimal point.
  void placePoint() { behindPoint_ = true; }

  /// Reads an exponent if its letter (E or D) is here. False when the letter has no digits behind
  /// it; such an exponent counts as 0.
  bool readExponent(Cursor& cursor);

  /// True as soon as there is a digit, be it a 0.
  [[nodiscard]] bool hasDigits() const { return hasDigits_; }

  /// The nearest double; 0 for a number too small for one, nothing for a number too large.
  [[nodiscard]] std::optional<double> value() const;

 private:
  /// Halfway points between two doubles have at most 767 digits; of what lies behind the kept ones
  /// it matters only whether it is zero.
  static constexpr std::size_t kKeptDigits = 768;

  void addDigit(char digit);

  std::array<char, kKeptDigits> kept_;  ///< without leading zeros; the first count_ are set
  std::size_t count_ = 0;
  std::int64_t pointShift_ = 0;  ///< the point stands this many places behind the kept digits
  std::int64_t exponent_ = 0;
  bool hasDigits_ = false;
  bool behindPoint_ = false;
  bool droppedNonZero_ = false;
};

/// More than a 32-bit number can be; readRadixNumber returns this for everything larger.
inline constexpr std::uint64_t kBeyond32Bits = std::uint64_t{1} << 32;

/// Reads what follows an "&": H and hexadecimal digits or O and octal digits. Nothing when no digit
/// is there.
[[nodiscard]] std::optional<std::uint64_t> readRadixNumber(Cursor& cursor);

/// Reads a run of digits of the base 8 or 16. Nothing when no digit is there.
[[nodiscard]] std::optional<std::uint64_t> readRadixDigits(Cursor& cursor, unsigned base);

}  // namespace lumodevice::text
