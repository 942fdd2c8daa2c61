#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zanctl {

/// What stands in the place of a value or a word.
struct Placeholder {
  std::string name;                  ///< "FILE"; "" for an option without a value
  std::vector<std::string> choices;  ///< where only these will do
};

/// One option, with all its names ("-h", "--help").
struct OptionSyntax {
  std::vector<std::string> names;
  Placeholder value;
  std::string help;  ///< its first part, in a few words
};

struct CommandSyntax {
  std::string name;
  std::string summary;
  std::vector<OptionSyntax> options;
  std::vector<Placeholder> words;
};

/// A command line, as shells have to know it to complete one.
struct Syntax {
  std::vector<OptionSyntax> options;  ///< they go with every command
  std::vector<CommandSyntax> commands;
};

/// What the parser takes. A type name with "|" in it, as in "visa|serial", is a list of choices.
[[nodiscard]] Syntax syntaxOf(const CLI::App& parser);

}  // namespace zanctl
