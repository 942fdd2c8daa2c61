#include "hosts/zanctl/completion/syntax.hpp"

#include <CLI/App.hpp>

#include "lumodevice/text/text.hpp"

namespace zanctl {

namespace {

/// A validator's description stands behind a colon.
std::string typeOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return type.substr(0, type.find(':'));
}

std::vector<std::string> choicesIn(const std::string& type) {
  return type.find('|') == std::string::npos ? std::vector<std::string>()
                                             : lumodevice::text::Split(type, '|');
}

OptionSyntax optionOf(const CLI::Option& option) {
  OptionSyntax syntax;
  for (const std::string& letter : option.get_snames()) {
    syntax.names.push_back("-" + letter);
  }
  for (const std::string& name : option.get_lnames()) {
    syntax.names.push_back("--" + name);
  }
  if (option.get_type_size_max() > 0) {
    const std::string type = typeOf(option);
    syntax.value = {type, choicesIn(type)};
  }
  const std::string& help = option.get_description();
  syntax.help = help.substr(0, help.find(';'));
  return syntax;
}

void addSyntax(const CLI::App& parser, std::vector<OptionSyntax>& options,
               std::vector<Placeholder>& words) {
  for (const CLI::Option* const option : parser.get_options()) {
    if (option->nonpositional()) {
      options.push_back(optionOf(*option));
    } else {
      words.push_back({option->get_name(), choicesIn(typeOf(*option))});
    }
  }
}

}  // namespace

Syntax syntaxOf(const CLI::App& parser) {
  Syntax syntax;
  std::vector<Placeholder> none;
  addSyntax(parser, syntax.options, none);
  for (const CLI::App* const command : parser.get_subcommands({})) {
    CommandSyntax row{command->get_name(), command->get_description(), {}, {}};
    addSyntax(*command, row.options, row.words);
    syntax.commands.push_back(std::move(row));
  }
  return syntax;
}

}  // namespace zanctl
