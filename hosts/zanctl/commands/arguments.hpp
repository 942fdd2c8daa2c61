#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace zanctl {

/// Adds a word that stands behind a command to the parser of its command line. The word must live
/// until the command line was read. Where only certain words make sense, `choices` names them for
/// the help and for shells: "list|get".
void addArgument(CLI::App& parser, const std::string& name, std::optional<std::string>& word,
                 const std::string& help, const std::string& choices = "");

/// The same for a word that must be there.
void addArgument(CLI::App& parser, const std::string& name, std::string& word,
                 const std::string& help, const std::string& choices = "");

/// The same for one word or more, the last of the command.
void addArgument(CLI::App& parser, const std::string& name, std::vector<std::string>& words,
                 const std::string& help);

/// Adds `--json` to a command that prints one object a line then. The flag must live as long.
CLI::Option* addJson(CLI::App& parser, bool& json);

}  // namespace zanctl
