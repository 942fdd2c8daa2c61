#include "hosts/zanctl/script/completions.hpp"

#include <algorithm>

#include "hosts/zanctl/script/members.hpp"
#include "hosts/zanctl/script/script.hpp"
#include "lumodevice/text/text.hpp"

namespace zanctl {

namespace {

using lumodevice::toolkit::Surface;

/// The words between the blanks of a line; the last one is "" behind a blank.
std::vector<std::string> wordsOf(std::string_view line) {
  std::vector<std::string> words(1);
  for (const char letter : line) {
    if (letter != ' ' && letter != '\t') {
      words.back() += letter;
    } else if (!words.back().empty()) {
      words.emplace_back();
    }
  }
  return words;
}

bool goesWith(const Instruction& instruction, const Member& member) {
  return (instruction.name == "get" && member.get != nullptr) ||
         (instruction.name == "put" && member.put != nullptr) ||
         (instruction.name == "call" && member.call != nullptr);
}

void addControls(std::vector<std::string>& words, const Surface& surface, const char* behind,
                 bool listsAlone) {
  for (const auto& control : surface.controls()) {
    if (!listsAlone || control->kind() == lumodevice::toolkit::Kind::ListBox) {
      words.push_back(control->fullName() + behind);
    }
  }
}

/// What an argument's name in the table of instructions stands for, as in
/// "MEMBER|CONTROL.PROPERTY".
std::vector<std::string> wordsFor(const Instruction& instruction, const std::string& argument,
                                  const Surface& surface) {
  std::vector<std::string> words;
  for (const std::string& choice : lumodevice::text::Split(argument, '|')) {
    if (choice == "MEMBER") {
      for (const Member& member : members()) {
        if (goesWith(instruction, member)) {
          words.emplace_back(member.name);
        }
      }
    } else if (choice == "CONTROL.PROPERTY") {
      addControls(words, surface, ".", false);
    } else if (choice == "CONTROL" || choice == "LIST") {
      addControls(words, surface, "", choice == "LIST");
    } else if (argument.find('|') != std::string::npos) {
      words.push_back(choice);
    }
  }
  return words;
}

}  // namespace

std::vector<std::string> completionsOf(std::string_view line, const Surface& surface) {
  const std::vector<std::string> typed = wordsOf(line);
  std::vector<std::string> words;
  if (typed.size() == 1) {
    for (const Instruction& instruction : instructions()) {
      words.emplace_back(instruction.name);
    }
  } else {
    const auto instruction = std::ranges::find(instructions(), typed[0], &Instruction::name);
    if (instruction != instructions().end()) {
      const auto arguments = lumodevice::text::Split(std::string(instruction->arguments), ' ');
      const std::size_t place = typed.size() - 2;
      words = place < arguments.size() ? wordsFor(*instruction, arguments[place], surface) : words;
    }
  }
  std::erase_if(words, [&](const std::string& word) { return !word.starts_with(typed.back()); });
  return words;
}

}  // namespace zanctl
