#include "hosts/zanctl/commands/arguments.hpp"

#include <CLI/App.hpp>

namespace zanctl {

namespace {

/// The help names the word alone, not its type.
constexpr const char* kNoType = " ";

std::string typeName(const std::string& choices) {
  return choices.empty() ? kNoType : choices;
}

}  // namespace

void addArgument(CLI::App& parser, const std::string& name, std::optional<std::string>& word,
                 const std::string& help, const std::string& choices) {
  parser
      .add_option_function<std::string>(
          name, [&word](const std::string& given) { word = given; }, help)
      ->type_name(typeName(choices));
}

void addArgument(CLI::App& parser, const std::string& name, std::string& word,
                 const std::string& help, const std::string& choices) {
  parser.add_option(name, word, help)->type_name(typeName(choices))->required();
}

void addArgument(CLI::App& parser, const std::string& name, std::vector<std::string>& words,
                 const std::string& help) {
  parser.add_option(name, words, help)->type_name(kNoType)->required();
}

CLI::Option* addJson(CLI::App& parser, bool& json) {
  return parser.add_flag("--json", json, "One JSON object a line");
}

}  // namespace zanctl
