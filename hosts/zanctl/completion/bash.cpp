#include <map>

#include "hosts/zanctl/completion/completion.hpp"

namespace zanctl {

namespace {

std::string namesOf(const std::vector<OptionSyntax>& options) {
  std::string names;
  for (const OptionSyntax& option : options) {
    names += (names.empty() ? "" : " ") + joined(option.names);
  }
  return names;
}

/// The call that offers what goes with a placeholder.
std::string offering(const Placeholder& placeholder) {
  switch (offerFor(placeholder)) {
    case Offer::Choices:
      return "_zanctl_words \"" + joined(placeholder.choices) + "\"";
    case Offer::Files:
      return "_zanctl_files -f";
    case Offer::Folders:
      return "_zanctl_files -d";
    case Offer::Ports:
      return "_zanctl_ports";
    case Offer::Controls:
      return "_zanctl_words \"" + joined(controlNames()) + "\"";
    case Offer::Addresses:
      return "_zanctl_addresses";
    case Offer::Nothing:
      break;
  }
  return ":";
}

/// The options that take a value, by what is offered for it.
std::map<std::string, std::vector<std::string>> valuesOf(const Syntax& syntax) {
  std::map<std::string, std::vector<std::string>> values;
  const auto add = [&](const std::vector<OptionSyntax>& options) {
    for (const OptionSyntax& option : options) {
      if (!option.value.name.empty()) {
        auto& names = values[offering(option.value)];
        names.insert(names.end(), option.names.begin(), option.names.end());
      }
    }
  };
  add(syntax.options);
  for (const CommandSyntax& command : syntax.commands) {
    add(command.options);
  }
  return values;
}

std::string patterns(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : " | ") + name;
  }
  return text;
}

constexpr std::string_view kTail = R"sh(  esac
}

_zanctl() {
  local words cur
  _zanctl_take_words
  cur=${words[-1]}
  COMPREPLY=()
  _zanctl_offer
  # What stands in front of the last colon is no part of the word that the shell replaces.
  if [[ ${words[-1]} == *:* && $COMP_WORDBREAKS == *:* ]]; then
    COMPREPLY=("${COMPREPLY[@]#"${words[-1]%"${words[-1]##*:}"}"}")
  fi
}

complete -F _zanctl zanctl
)sh";

constexpr std::string_view kHead =
    R"sh(# bash completion for zanctl, made by "zanctl --completion bash"

_zanctl_words() {
  mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
}

_zanctl_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen "$1" -- "$cur")
}

# COMn=DEVICE: the shell sees the "=" as a word of its own.
_zanctl_ports() {
  if [[ ${words[-1]} == "=" || ${words[-2]} == "=" ]]; then
    _zanctl_files -f
  else
    compopt -o nospace 2>/dev/null
    _zanctl_words "$(printf 'COM%d= ' {1..16})"
  fi
}

_zanctl_addresses() {
  _zanctl_words "$("${words[0]}" list --names 2>/dev/null)"
}

# The words of the line up to the cursor: the shell cuts them at colons, too, which addresses are full of.
_zanctl_take_words() {
  local at word last="" line=$COMP_LINE
  words=()
  for ((at = 0; at <= COMP_CWORD; ++at)); do
    word=${COMP_WORDS[at]}
    if [[ -n $last && $line != [[:blank:]]* && ($word == :* || $last == *:) ]]; then
      words[-1]+=$word
    else
      words+=("$word")
      line=${line#"${line%%[^[:blank:]]*}"}
    fi
    line=${line#"$word"}
    last=$word
  done
}

_zanctl_offer() {
  local option=${words[-2]} command="" place=0 at
  if [[ $option == "=" ]]; then
    option=${words[-3]}
  elif [[ $cur == "=" ]]; then
    cur=""
  fi
  if [[ $option == COM* ]]; then
    option=--port
  fi
)sh";

}  // namespace

std::string bashCompletion(const Syntax& syntax) {
  const auto values = valuesOf(syntax);
  std::vector<std::string> withValue;
  for (const auto& [offer, names] : values) {
    withValue.insert(withValue.end(), names.begin(), names.end());
  }
  std::string script(kHead);
  script += "  for ((at = 1; at < ${#words[@]} - 1; ++at)); do\n    case ${words[at]} in\n";
  script += "      " + patterns(withValue) + ")\n";
  script +=
      "        ((at += 1))\n"
      "        [[ ${words[at]} == \"=\" ]] && ((at += 1))\n"
      "        [[ ${words[at + 1]} == \"=\" ]] && ((at += 2)) ;;\n"
      "      -*) ;;\n"
      "      *) if [[ -z $command ]]; then command=${words[at]}; else ((++place)); fi ;;\n"
      "    esac\n  done\n";
  script += "  case $option in\n";
  for (const auto& [offer, names] : values) {
    script += "    " + patterns(names) + ") " + offer + "; return ;;\n";
  }
  script += "  esac\n";
  const std::string everywhere = namesOf(syntax.options);
  std::string all;
  std::string cases;
  for (const CommandSyntax& command : syntax.commands) {
    all += (all.empty() ? "" : " ") + command.name;
    cases += "    " + command.name + ":-*) _zanctl_words \"" + everywhere + " " +
             namesOf(command.options) + "\" ;;\n";
    for (std::size_t place = 0; place < command.words.size(); ++place) {
      const std::string offer = offering(command.words[place]);
      if (offer != ":") {
        cases += "    " + command.name + ":*) ((place == " + std::to_string(place) + ")) && " +
                 offer + " ;;&\n";
      }
    }
  }
  script += "  case $command:$cur in\n    :-*) _zanctl_words \"" + everywhere + "\" ;;\n    :*) ";
  script += "_zanctl_words \"" + all + "\" ;;\n" + cases;
  script += kTail;
  return script;
}

}  // namespace zanctl
