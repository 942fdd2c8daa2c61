#include "simulator/screen/text.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace zansim {
namespace {

constexpr std::size_t kMostDigitsAndPoint = 6;
constexpr int kMostDecimals = 4;

std::string formatted(double value, std::chars_format format, int decimals) {
  std::array<char, 400> text{};  // the longest double has 309 digits before the point
  const auto [end, code] =
      std::to_chars(text.data(), text.data() + text.size(), value, format, decimals);
  return {text.data(), code == std::errc() ? end : text.data()};
}

/// "9.9e+37" as "9.9E37".
std::string withShortExponent(const std::string& text) {
  const std::size_t mark = text.find('e');
  const bool negative = text[mark + 1] == '-';
  const std::size_t digits = text[mark + 2] == '0' ? mark + 3 : mark + 2;
  return text.substr(0, mark) + (negative ? "E-" : "E") + text.substr(digits);
}

std::string magnitude(double value) {
  for (int decimals = kMostDecimals; decimals >= 0; --decimals) {
    std::string text = formatted(value, std::chars_format::fixed, decimals);
    if (text.size() <= kMostDigitsAndPoint - (decimals == 0 ? 1 : 0)) {
      return text;
    }
  }
  // Only the largest exponents have no room for a decimal.
  const std::string text = withShortExponent(formatted(value, std::chars_format::scientific, 1));
  return text.size() <= kMostDigitsAndPoint
             ? text
             : withShortExponent(formatted(value, std::chars_format::scientific, 0));
}

}  // namespace

std::string screenNumber(double value) {
  if (!std::isfinite(value)) {
    return "-----";
  }
  const std::string text = magnitude(std::abs(value));
  const bool zero = text.find_first_not_of("0.") == std::string::npos;
  return (value < 0 && !zero ? "-" : "") + text;
}

std::string_view quantityText(Regulation regulation) {
  switch (regulation) {
    case Regulation::Current:
      return "current";
    case Regulation::Voltage:
      return "voltage";
    case Regulation::Resistance:
      return "resistance";
  }
  return "";
}

std::string_view tripText(Trip trip) {
  switch (trip) {
    case Trip::None:
      return "";
    case Trip::OverCurrent:
      return "OCP";
    case Trip::OverVoltage:
      return "OVP";
    case Trip::UnderVoltage:
      return "UVP";
  }
  return "";
}

}  // namespace zansim
