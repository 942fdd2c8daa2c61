// Any bytes at all: every function on texts ends with a result or with the fault it announces, and
// what the functions promise about each other holds.

#include "lumodevice/text/text.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/require.hpp"

namespace {

namespace text = lumodevice::text;
using lumodevice::fuzz::require;

constexpr double kLargestWithAReadableText = 1.79769313486231e308;

std::optional<double> read(std::string_view input) {
  try {
    return text::Val(input);
  } catch (const text::NumberFault& fault) {
    require(fault.number() == text::kOverflow, "Val fails by overflow alone");
    return std::nullopt;
  }
}

void checkNumbers(std::string_view input) {
  const std::optional<double> value = read(input);
  require(value || !text::isNumericText(input), "Val reads whatever is numeric text");
  if (!value) return;
  require(std::isfinite(*value), "Val is finite");

  // The 15 digits of the very largest doubles round to a number above them all.
  if (std::abs(*value) > kLargestWithAReadableText) return;
  const std::string written = text::numberText(*value);
  require(text::isNumericText(written), "a number's text is numeric");
  require(text::numberText(read(written).value()) == written, "a number's text reads back");
  require(text::isNumericText(text::formatValue(*value)), "a formatted value is numeric");
}

void checkStrings(std::string_view input) {
  const std::string trimmed = text::Trim(input);
  require(trimmed.empty() || (trimmed.front() != ' ' && trimmed.back() != ' '), "Trim trims");
  require(text::contains(input, trimmed), "Trim takes from the ends alone");

  const auto size = static_cast<std::int64_t>(input.size());
  const std::int64_t cut = size / 3;
  require(text::Left(input, cut) + text::Right(input, size - cut) == input, "the ends join");
  require(text::Mid(input, cut + 1, size) == text::Right(input, size - cut), "Mid goes to the end");

  std::string joined;
  for (const std::string& part : text::Split(input, ',')) joined += part + ',';
  require(joined == (input.empty() ? "" : std::string(input) + ','), "the split parts join");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  checkNumbers(input);
  checkStrings(input);
  return 0;
}
