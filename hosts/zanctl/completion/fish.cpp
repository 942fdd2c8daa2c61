#include "hosts/zanctl/completion/completion.hpp"

namespace zanctl {

namespace {

std::string quoted(const std::string& text) {
  std::string out = "'";
  for (const char letter : text) {
    if (letter == '\'' || letter == '\\') {
      out += '\\';
    }
    out += letter;
  }
  return out + "'";
}

/// The words of `complete` that offer what goes with a placeholder.
std::string offering(const Placeholder& placeholder) {
  switch (offerFor(placeholder)) {
    case Offer::Choices:
      return " -f -a " + quoted(joined(placeholder.choices));
    case Offer::Files:
      return " -F";
    case Offer::Folders:
      return " -f -a '(__fish_complete_directories)'";
    case Offer::Ports:
      return " -f -a 'COM(seq 16)=(__fish_complete_path /dev/tty)'";
    case Offer::Controls:
      return " -f -a " + quoted(joined(controlNames()));
    case Offer::Addresses:
      return " -f -a '(zanctl list --names 2>/dev/null)'";
    case Offer::Nothing:
      break;
  }
  return " -f";
}

std::string optionLines(const std::vector<OptionSyntax>& options, const std::string& condition) {
  std::string lines;
  for (const OptionSyntax& option : options) {
    lines += "complete -c zanctl" + condition;
    for (const std::string& name : option.names) {
      const bool isLetter = !name.starts_with("--");
      lines += (isLetter ? " -s " : " -l ") + name.substr(isLetter ? 1 : 2);
    }
    if (!option.value.name.empty()) {
      lines += " -r" + offering(option.value);
    }
    lines += " -d " + quoted(option.help) + "\n";
  }
  return lines;
}

std::string valued(const Syntax& syntax) {
  std::string names;
  const auto add = [&](const std::vector<OptionSyntax>& options) {
    for (const OptionSyntax& option : options) {
      if (!option.value.name.empty()) {
        names += " " + joined(option.names);
      }
    }
  };
  add(syntax.options);
  for (const CommandSyntax& command : syntax.commands) {
    add(command.options);
  }
  return names;
}

}  // namespace

std::string fishCompletion(const Syntax& syntax) {
  std::string script =
      "# fish completion for zanctl, made by \"zanctl --completion fish\"\n\n"
      "# Whether the word at the cursor stands at a place: \"__zanctl_at\" for that of the "
      "command,\n"
      "# \"__zanctl_at COMMAND N\" for a word behind it.\n"
      "function __zanctl_at\n"
      "    set -l command\n"
      "    set -l place 0\n"
      "    set -l skip no\n"
      "    for word in (commandline -opc)[2..-1]\n"
      "        if test $skip = yes\n"
      "            set skip no\n"
      "        else if contains -- $word" +
      valued(syntax) +
      "\n"
      "            set skip yes\n"
      "        else if string match -q -- '-*' $word\n"
      "            continue\n"
      "        else if test -z \"$command\"\n"
      "            set command $word\n"
      "        else\n"
      "            set place (math $place + 1)\n"
      "        end\n"
      "    end\n"
      "    test \"$command\" = \"$argv[1]\"; and begin\n"
      "        test (count $argv) -lt 2; or test $place -eq $argv[2]\n"
      "    end\n"
      "end\n\n"
      "complete -c zanctl -f\n";
  script += optionLines(syntax.options, "");
  for (const CommandSyntax& command : syntax.commands) {
    const std::string behind = " -n '__zanctl_at " + command.name;
    script += "complete -c zanctl -n __zanctl_at -a " + command.name + " -d " +
              quoted(command.summary) + "\n";
    script += optionLines(command.options, behind + "'");
    for (std::size_t place = 0; place < command.words.size(); ++place) {
      script += "complete -c zanctl" + behind + " " + std::to_string(place) + "'" +
                offering(command.words[place]) + "\n";
    }
  }
  return script;
}

}  // namespace zanctl
