#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace zanctl {

/// The number that the whole of `text` is; none for anything else.
template <typename Number>
[[nodiscard]] std::optional<Number> parseNumber(std::string_view text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value)
                                                                  : std::nullopt;
}

[[nodiscard]] inline std::optional<int> parseWhole(std::string_view text) {
  return parseNumber<int>(text);
}

}  // namespace zanctl
