#include <algorithm>
#include <charconv>

#include "simulator/commands/command.hpp"
#include "simulator/mainframe.hpp"
#include "simulator/wire/block.hpp"
#include "simulator/wire/characters.hpp"

namespace zansim {
namespace {

bool isLower(char c) {
  return c >= 'a' && c <= 'z';
}
bool isLetter(char c) {
  return upper(c) >= 'A' && upper(c) <= 'Z';
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isSame(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return a == b || upper(a) == upper(b); });
}

/// What is wrong with a text that should have been a number and goes on at `rest`.
Error numberError(std::string_view text, std::string_view rest) {
  if (text.front() == '"' || text.front() == '\'' || text.front() == '#') {
    return Error::DataType;
  }
  if (isLetter(text.front())) {
    return Error::IllegalParameter;
  }
  return isLetter(rest.empty() ? '\0' : rest.front()) ? Error::InvalidSuffix : Error::InvalidNumber;
}

std::optional<double> limitNamed(std::string_view word, const Bounds& bounds) {
  if (isWord(word, "MINimum")) {
    return bounds.least;
  }
  if (isWord(word, "MAXimum")) {
    return bounds.most;
  }
  if (isWord(word, "DEFault")) {
    return bounds.usual;
  }
  return std::nullopt;
}

}  // namespace

bool isWord(std::string_view word, std::string_view pattern) {
  if (word.size() == pattern.size()) {
    return isSame(word, pattern);
  }
  // The short form ends where the lower case begins.
  return word.size() < pattern.size() && isLower(pattern[word.size()]) &&
         (word.empty() || !isLower(pattern[word.size() - 1])) &&
         isSame(word, pattern.substr(0, word.size()));
}

Channel* Call::channel() {
  if (mainframe.channelCount() == 0) {
    fail(Error::HardwareMissing);
    return nullptr;
  }
  return &mainframe.channel(mainframe.selectedChannel(), now);
}

void Call::switchLoad(bool on) {
  if (!on) {
    mainframe.switchOff(now);
  } else if (!mainframe.switchOn(now)) {
    fail(Error::DeviceSpecific);
  }
}

void Call::fail(Error why) {
  if (error == Error::None) {
    error = why;
  }
}

std::optional<double> Call::number(std::size_t index, Bounds bounds) {
  const std::string_view text = arguments.items[index];
  if (const std::optional<double> named = limitNamed(text, bounds)) {
    return named;
  }
  const std::string_view digits = text.starts_with('+') ? text.substr(1) : text;
  const bool startsNumber =
      !digits.empty() && (isDigit(digits.front()) || digits.front() == '.' ||
                          (digits.front() == '-' && digits.size() == text.size()));
  double value = 0;
  const char* const last = digits.data() + digits.size();
  const auto [stop, code] = std::from_chars(digits.data(), last, value);
  if (!startsNumber || code == std::errc::invalid_argument || stop != last) {
    fail(numberError(text, std::string_view(stop, static_cast<std::size_t>(last - stop))));
    return std::nullopt;
  }
  if (code == std::errc::result_out_of_range || !(value >= bounds.least && value <= bounds.most)) {
    fail(Error::OutOfRange);
    return std::nullopt;
  }
  return value;
}

std::optional<double> Call::limit(std::size_t index, Bounds bounds) {
  const std::optional<double> named = limitNamed(arguments.items[index], bounds);
  if (!named) {
    fail(Error::IllegalParameter);
  }
  return named;
}

std::optional<bool> Call::choice(std::size_t index, const Words& words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (isWord(arguments.items[index], words[i])) {
      return i == 1;
    }
  }
  const auto value = number(index, {0, 1, 0});
  return value ? std::optional(*value >= 0.5) : std::nullopt;
}

std::optional<std::string_view> Call::block(std::size_t index) {
  const std::string_view text = arguments.items[index];
  const std::optional<std::string_view> data = blockData(text);
  if (!data) {
    fail(text.front() == '#' ? Error::InvalidBlock : Error::DataType);
  }
  return data;
}

void Call::failWord(std::size_t index) {
  const char first = arguments.items[index].front();
  fail(isLetter(first) ? Error::IllegalParameter : Error::DataType);
}

void Call::reply(double value) {
  replyFixed(value, 6);
  answer.resize(answer.find_last_not_of('0') + 1);
  if (answer.ends_with('.')) {
    answer.pop_back();
  }
}

void Call::replyFixed(double value, int decimals) {
  std::array<char, 400> text{};
  const double positiveZero = value + 0.0;
  const auto result = std::to_chars(text.data(), text.data() + text.size(), positiveZero,
                                    std::chars_format::fixed, decimals);
  answer.append(text.data(), result.ptr);
}

void Call::reply(std::string_view text) {
  answer.append(text);
}

void Call::replyBlock(std::string_view bytes) {
  appendBlock(answer, bytes);
}

}  // namespace zansim
