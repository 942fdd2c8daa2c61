#include "hosts/zanctl/completion/completion.hpp"

namespace zanctl {

namespace {

/// Between single quotes, with what means something to _arguments behind a backslash.
std::string quoted(const std::string& text) {
  std::string out;
  for (const char letter : text) {
    if (letter == '\'') {
      out += "'\\''";
    } else if (letter == '[' || letter == ']' || letter == ':' || letter == '\\') {
      out += {'\\', letter};
    } else {
      out += letter;
    }
  }
  return out;
}

/// ":NAME:ACTION"
std::string placeholderSpec(const Placeholder& placeholder) {
  const std::string message = ":" + quoted(placeholder.name) + ":";
  switch (offerFor(placeholder)) {
    case Offer::Choices:
      return message + "(" + joined(placeholder.choices) + ")";
    case Offer::Files:
      return message + "_files";
    case Offer::Folders:
      return message + "_files -/";
    case Offer::Ports:
      return message + "_zanctl_ports";
    case Offer::Controls:
      return message + "(" + joined(controlNames()) + ")";
    case Offer::Addresses:
      return message + "_zanctl_addresses";
    case Offer::Nothing:
      break;
  }
  return message;
}

std::string optionSpecs(const std::vector<OptionSyntax>& options) {
  std::string specs;
  for (const OptionSyntax& option : options) {
    for (const std::string& name : option.names) {
      const bool valued = !option.value.name.empty();
      specs += "    '*" + name + "[" + quoted(option.help) + "]" +
               (valued ? placeholderSpec(option.value) : "") + "'\n";
    }
  }
  return specs;
}

constexpr std::string_view kHead = R"sh(#compdef zanctl
# zsh completion for zanctl, made by "zanctl --completion zsh"

_zanctl_ports() {
  if compset -P 'COM*='; then
    _files
  else
    compadd -S = COM{1..16}
  fi
}

_zanctl_addresses() {
  local -a addresses=(${(f)"$(zanctl list --names 2>/dev/null)"})
  compadd -a addresses
}

_zanctl() {
  local context state line
  typeset -A opt_args
  local -a everywhere commands
)sh";

}  // namespace

std::string zshCompletion(const Syntax& syntax) {
  std::string script(kHead);
  script += "  everywhere=(\n" + optionSpecs(syntax.options) + "  )\n  commands=(\n";
  for (const CommandSyntax& command : syntax.commands) {
    script += "    '" + command.name + ":" + quoted(command.summary) + "'\n";
  }
  script +=
      "  )\n"
      "  _arguments -C \"${everywhere[@]}\" '1:command:->command' '*::word:->words'\n"
      "  case $state in\n"
      "    command) _describe command commands ;;\n"
      "    words)\n"
      "      case $words[1] in\n";
  for (const CommandSyntax& command : syntax.commands) {
    script +=
        "      " + command.name + ")\n        local -a own=(\n" + optionSpecs(command.options);
    for (std::size_t place = 0; place < command.words.size(); ++place) {
      script += "    '" + std::to_string(place + 1) + placeholderSpec(command.words[place]) + "'\n";
    }
    script += "        )\n        _arguments \"${everywhere[@]}\" \"${own[@]}\" ;;\n";
  }
  script += "      esac ;;\n  esac\n}\n\n";
  // Sourced it is made known; found by name it is run.
  script +=
      "if [[ $zsh_eval_context[-1] == loadautofunc ]]; then\n  _zanctl \"$@\"\nelse\n"
      "  compdef _zanctl zanctl\nfi\n";
  return script;
}

}  // namespace zanctl
