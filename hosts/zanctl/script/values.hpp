#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "lumodevice/zan_ctrl.hpp"

/// Values of the component as words of a script, and back. `what` names in a mistake what the word
/// was given for.
namespace zanctl {

/// "True" or "False".
[[nodiscard]] std::string wordOf(bool value);
[[nodiscard]] std::string wordOf(std::int16_t value);
/// Its number.
[[nodiscard]] std::string wordOf(lumodevice::LinkKind value);
[[nodiscard]] std::string wordOf(const std::string& value);
/// "IFormattedIO488" or "Nothing".
[[nodiscard]] std::string wordOf(const std::shared_ptr<lumodevice::io::FormattedIO488>& value);

/// "True" or "False" (or an automation Boolean's -1 or 0); throws ScriptMistake for anything else.
[[nodiscard]] bool booleanIn(const std::string& word);

/// Throws ScriptMistake for anything but a whole number of 16 bits.
[[nodiscard]] std::int16_t whole16In(const std::string& word, std::string_view what);

/// Nothing alone: a script has no objects. Throws ScriptMistake for anything else.
[[nodiscard]] std::shared_ptr<lumodevice::io::FormattedIO488> deviceIn(const std::string& word,
                                                                       std::string_view what);

/// The value that a word stands for. Throws ScriptMistake.
template <typename Value>
[[nodiscard]] Value valueIn(const std::string& word, std::string_view what) {
  if constexpr (std::is_same_v<Value, bool>) {
    return booleanIn(word);
  } else if constexpr (std::is_same_v<Value, std::int16_t>) {
    return whole16In(word, what);
  } else if constexpr (std::is_same_v<Value, std::shared_ptr<lumodevice::io::FormattedIO488>>) {
    return deviceIn(word, what);
  } else {
    return word;
  }
}

}  // namespace zanctl
