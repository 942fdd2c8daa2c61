#include <cmath>
#include <limits>

#include "lumodevice/text/text.hpp"

namespace lumodevice::text {
namespace {

template <typename Whole, typename Number>
Whole fit(Number number) {
  using Limits = std::numeric_limits<Whole>;
  // Asked this way round, a NaN fails too.
  if (!(number >= Limits::min() && number <= Limits::max())) {
    throw NumberFault(kOverflow,
                      "a number does not fit in " + std::to_string(sizeof(Whole) * 8) + " bits");
  }
  return static_cast<Whole>(number);
}

/// The nearest whole number, halves to the even one. The remainder is exact and rounds its quotient
/// just so, whatever rounding mode the process is in.
double roundHalfToEven(double value) {
  return value - std::remainder(value, 1.0);
}

}  // namespace

std::int16_t toWhole16(double value) {
  return fit<std::int16_t>(roundHalfToEven(value));
}

std::int32_t toWhole32(double value) {
  return fit<std::int32_t>(roundHalfToEven(value));
}

// The operands are promoted to int, which no sum of two 16-bit numbers leaves.

std::int16_t add16(std::int16_t left, std::int16_t right) {
  return fit<std::int16_t>(left + right);
}

}  // namespace lumodevice::text
