#include "platform/builtin/message_end.hpp"

#include <algorithm>

namespace lumodevice::platform {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

/// One character of a block's header; one that does not belong there makes the message text.
void MessageEnd::takeHeader(char c) {
  const State before = state_;
  state_ = State::Text;
  if (before == State::Start && c == '#') {
    state_ = State::Mark;
  } else if (before == State::Mark && isDigit(c) && c != '0') {
    digitsLeft_ = c - '0';
    dataLeft_ = 0;
    state_ = State::Length;
  } else if (before == State::Length && isDigit(c)) {
    dataLeft_ = dataLeft_ * 10 + static_cast<std::size_t>(c - '0');
    if (--digitsLeft_ > 0) {
      state_ = State::Length;
    } else if (dataLeft_ > 0) {
      state_ = State::Data;
    }
  }
}

MessageEnd::Taken MessageEnd::take(std::string_view data) {
  std::size_t used = 0;
  while (used < data.size()) {
    if (state_ == State::Data) {
      const std::size_t bytes = std::min(dataLeft_, data.size() - used);
      used += bytes;
      dataLeft_ -= bytes;
      if (dataLeft_ == 0) state_ = State::Text;
      continue;
    }
    if (state_ != State::Text) takeHeader(data[used]);
    if (state_ == State::Text) {
      const auto end = data.find('\n', used);
      if (end == std::string_view::npos) return {.length = data.size(), .ended = false};
      restart();
      return {.length = end + 1, .ended = true};
    }
    ++used;
  }
  return {.length = used, .ended = false};
}

}  // namespace lumodevice::platform
