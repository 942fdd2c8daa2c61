#include "hosts/zanctl/commands/error_queue.hpp"

#include "hosts/zanctl/script/numbers.hpp"
#include "lumodevice/text/text.hpp"

namespace zanctl {

ErrorQueue takeErrors(lumodevice::ZANCtrl& component) {
  // An instrument keeps no more; one that repeats an error for ever is not asked for ever.
  constexpr std::size_t kMostErrors = 64;
  ErrorQueue queue;
  while (queue.errors.size() < kMostErrors) {
    std::string error = component.ErrMessage();
    error.erase(error.find_last_not_of("\r\n") + 1);
    queue.answered = !error.empty();
    if (!queue.answered || lumodevice::text::Val(error) == 0) {
      break;
    }
    queue.errors.push_back(std::move(error));
  }
  return queue;
}

Json errorObject(const std::string& error) {
  const std::size_t comma = error.find(',');
  std::string text = comma == std::string::npos ? "" : error.substr(comma + 1);
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
    text = text.substr(1, text.size() - 2);
  }
  const auto code = parseWhole(std::string_view(error).substr(0, comma));
  return {{"code", code ? Json(*code) : Json()}, {"text", wireText(text)}};
}

}  // namespace zanctl
