#include "lumodevice/link/gate.hpp"

#include <algorithm>

namespace lumodevice::link {

namespace {

constexpr std::string_view kChooseChannel = "CHAN";

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

char capital(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                              : character;
}

std::string_view withoutBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view withoutLineEnds(std::string_view message) {
  return message.substr(0, message.find_last_not_of("\r\n") + 1);
}

bool choosesChannel(std::string_view header, std::string_view parameter) {
  if (header.starts_with(':')) {
    header.remove_prefix(1);
  }
  return std::ranges::equal(header, kChooseChannel, {}, capital) && !parameter.empty() &&
         std::ranges::all_of(parameter, isDigit);
}

/// A query has its question mark at the end of the header; one in a parameter is just text.
bool partOnlyLooks(std::string_view part) {
  part = withoutBlanks(part);
  const std::string_view header = part.substr(0, part.find(' '));
  const std::string_view parameter = withoutBlanks(part.substr(header.size()));
  return header.ends_with('?') || choosesChannel(header, parameter);
}

bool isPrintable(char character) {
  return character >= ' ' && character <= '~';
}

}  // namespace

bool onlyLooks(std::string_view message) {
  message = withoutLineEnds(message);
  if (!std::ranges::all_of(message, isPrintable)) {
    return false;
  }
  while (true) {
    const std::size_t end = message.find(';');
    if (!partOnlyLooks(message.substr(0, end))) {
      return false;
    }
    if (end == std::string_view::npos) {
      return true;
    }
    message.remove_prefix(end + 1);
  }
}

bool Gate::holdsBack(std::string_view message) {
  if (!observing_ || onlyLooks(message)) {
    return false;
  }
  tell(message);
  return true;
}

bool Gate::holdsBackBlock(std::string_view command) {
  if (observing_) {
    tell(command);
  }
  return observing_;
}

void Gate::tell(std::string_view message) {
  const std::string line(withoutBlanks(withoutLineEnds(message)));
  reports_.fail(FailureKind::HeldBack, line);
  heldBack.raise(line);
}

}  // namespace lumodevice::link
