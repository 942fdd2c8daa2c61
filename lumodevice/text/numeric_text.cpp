#include "lumodevice/text/reading.hpp"
#include "lumodevice/text/text.hpp"

namespace lumodevice::text {
namespace {

constexpr std::string_view kNoBreakSpace = "\xC2\xA0";

void skipWhite(Cursor& cursor) {
  for (;;) {
    if (cursor.startsWith(kNoBreakSpace)) {
      cursor.skip(kNoBreakSpace.size());
    } else if (cursor.takeAnyOf(" \t\n\v\f\r") == '\0') {
      return;
    }
  }
}

/// The marks around the digits of a number: a sign or a pair of parentheses, and a currency sign;
/// each may stand once, in front or behind, with blanks between them.
class Marks {
 public:
  void readInFront(Cursor& cursor) {
    do {
      skipWhite(cursor);
    } while (takeSign(cursor) || takeCurrency(cursor) || takeOpening(cursor));
  }

  void readBehind(Cursor& cursor) {
    do {
      skipWhite(cursor);
    } while (takeSign(cursor) || takeCurrency(cursor) || takeClosing(cursor));
  }

  [[nodiscard]] bool any() const { return signed_ || currency_; }
  [[nodiscard]] bool open() const { return open_; }

 private:
  bool takeSign(Cursor& cursor) {
    const bool taken = !signed_ && cursor.takeAnyOf("+-") != '\0';
    signed_ = signed_ || taken;
    return taken;
  }

  bool takeCurrency(Cursor& cursor) {
    const bool taken = !currency_ && cursor.takeAnyOf("$") != '\0';
    currency_ = currency_ || taken;
    return taken;
  }

  bool takeOpening(Cursor& cursor) {
    if (signed_ || cursor.takeAnyOf("(") == '\0') return false;
    signed_ = true;  // parentheses are a sign: they make the number negative
    open_ = true;
    return true;
  }

  bool takeClosing(Cursor& cursor) {
    if (!open_ || cursor.takeAnyOf(")") == '\0') return false;
    open_ = false;
    return true;
  }

  bool signed_ = false;
  bool currency_ = false;
  bool open_ = false;
};

/// Digits with thousands separators anywhere behind the first of them.
void readGroupedDigits(Cursor& cursor, Decimal& number) {
  if (!number.readDigits(cursor)) return;
  while (cursor.takeAnyOf(",") != '\0' || number.readDigits(cursor)) {
  }
}

bool readDecimal(Cursor& cursor) {
  Decimal number;
  readGroupedDigits(cursor, number);
  if (cursor.takeAnyOf(".") != '\0') {
    number.placePoint();
    number.readDigits(cursor);
  }
  return number.hasDigits() && number.readExponent(cursor) && number.value().has_value();
}

/// What follows the "&": as Val reads it, and octal digits without their letter.
bool readRadix(Cursor& cursor) {
  std::optional<std::uint64_t> bits = readRadixDigits(cursor, 8);
  if (!bits) bits = readRadixNumber(cursor);
  cursor.takeAnyOf("&");
  skipWhite(cursor);
  return bits && *bits < kBeyond32Bits;
}

}  // namespace

bool isNumericText(std::string_view text) {
  Cursor cursor(text, Blanks::kept);
  Marks marks;
  marks.readInFront(cursor);
  if (!marks.any() && cursor.takeAnyOf("&") != '\0') return readRadix(cursor) && cursor.atEnd();
  if (!readDecimal(cursor)) return false;
  marks.readBehind(cursor);
  return !marks.open() && cursor.atEnd();
}

}  // namespace lumodevice::text
