#include "lumodevice/text/reading.hpp"
#include "lumodevice/text/text.hpp"

namespace lumodevice::text {
namespace {

double radixValue(Cursor& cursor) {
  const std::uint64_t bits = readRadixNumber(cursor).value_or(0);
  if (bits >= kBeyond32Bits) {
    throw NumberFault(kOverflow, "a hexadecimal or octal number does not fit in 32 bits");
  }
  const bool wide = cursor.takeAnyOf("&") != '\0' || bits > 0xFFFF;
  return wide ? static_cast<std::int32_t>(bits) : static_cast<std::int16_t>(bits);
}

}  // namespace

double Val(std::string_view text) {
  Cursor cursor(text, Blanks::skipped);
  if (cursor.takeAnyOf("&") != '\0') return radixValue(cursor);

  const bool negative = cursor.takeAnyOf("+-") == '-';
  Decimal number;
  number.readDigits(cursor);
  if (cursor.takeAnyOf(".") != '\0') {
    number.placePoint();
    number.readDigits(cursor);
  }
  if (!number.hasDigits()) return 0;
  number.readExponent(cursor);

  const std::optional<double> magnitude = number.value();
  if (!magnitude) throw NumberFault(kOverflow, "a number is too large for a double");
  return negative && *magnitude != 0 ? -*magnitude : *magnitude;
}

}  // namespace lumodevice::text
