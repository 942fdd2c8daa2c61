#include "hosts/zanpanel/readings/load_watch.hpp"

#include <cctype>
#include <string>

namespace zanpanel {

std::optional<bool> loadCommand(std::string_view command) {
  std::string plain;
  for (const char character : command) {
    if (character != ':' || !plain.empty()) {
      plain += static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    }
  }
  const std::size_t begin = plain.find_first_not_of(" \t");
  const std::size_t end = plain.find_last_not_of(" \t\r\n");
  if (begin == std::string::npos) {
    return std::nullopt;
  }
  plain = plain.substr(begin, end - begin + 1);
  if (plain == "LOAD 0" || plain == "LOAD OFF") {
    return false;
  }
  if (plain == "LOAD 1" || plain == "LOAD ON") {
    return true;
  }
  return std::nullopt;
}

void LoadWatch::sent(std::string_view command) {
  if (const auto on = loadCommand(command)) {
    offWasAsked_ = !*on;
    tripped_ = false;
  }
}

bool LoadWatch::reported(bool on) {
  const bool wentOff = on_.value_or(false) && !on;
  const bool byItself = wentOff && !offWasAsked_;
  if (on) {
    offWasAsked_ = false;
  }
  tripped_ = byItself || (tripped_ && !on);
  on_ = on;
  return byItself;
}

void LoadWatch::forget() {
  on_.reset();
  offWasAsked_ = false;
  tripped_ = false;
}

}  // namespace zanpanel
