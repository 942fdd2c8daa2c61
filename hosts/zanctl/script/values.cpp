#include "hosts/zanctl/script/values.hpp"

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/script/numbers.hpp"

namespace zanctl {

using lumodevice::io::FormattedIO488;

std::string wordOf(bool value) {
  return value ? "True" : "False";
}

std::string wordOf(std::int16_t value) {
  return std::to_string(value);
}

std::string wordOf(lumodevice::LinkKind value) {
  return wordOf(static_cast<std::int16_t>(value));
}

std::string wordOf(const std::string& value) {
  return value;
}

std::string wordOf(const std::shared_ptr<FormattedIO488>& value) {
  return value == nullptr ? "Nothing" : "IFormattedIO488";
}

bool booleanIn(const std::string& word) {
  if (word != "True" && word != "False" && word != "-1" && word != "0") {
    throw ScriptMistake("True or False is needed, not " + escaped(word));
  }
  return word == "True" || word == "-1";
}

std::int16_t whole16In(const std::string& word, std::string_view what) {
  const auto value = parseNumber<std::int16_t>(word);
  if (!value) {
    throw ScriptMistake(std::string(what) + " is a whole number from -32768 to 32767, not " +
                        escaped(word));
  }
  return *value;
}

std::shared_ptr<FormattedIO488> deviceIn(const std::string& word, std::string_view what) {
  if (word != "Nothing") {
    throw ScriptMistake(std::string(what) + " takes Nothing only, not " + escaped(word));
  }
  return nullptr;
}

}  // namespace zanctl
