#include "hosts/zanpanel/readings/answers.hpp"

#include <charconv>
#include <cmath>
#include <system_error>

namespace zanpanel {

namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

}  // namespace

std::optional<double> numberIn(std::string_view answer) {
  std::string_view text = trimmed(answer);
  if (text.starts_with('+')) {
    text.remove_prefix(1);
  }
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, value);
  const bool whole = read.ec == std::errc() && read.ptr == end && !text.empty();
  return whole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<bool> loadStateIn(std::string_view answer) {
  const std::string_view text = trimmed(answer);
  if (text == "ON" || text == "OFF") {
    return text == "ON";
  }
  const auto number = numberIn(text);
  return number && (*number == 0 || *number == 1) ? std::optional(*number == 1) : std::nullopt;
}

bool isError(std::string_view answer) {
  const std::string_view text = trimmed(answer);
  return !text.empty() && numberIn(text.substr(0, text.find(','))).value_or(1) != 0;
}

}  // namespace zanpanel
