#include "hosts/zanctl/script/script.hpp"

#include <algorithm>
#include <istream>
#include <optional>
#include <stdexcept>
#include <utility>

#include "hosts/zanctl/output/control_names.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/nearest.hpp"
#include "hosts/zanctl/script/numbers.hpp"
#include "hosts/zanctl/script/words.hpp"

namespace zanctl {

namespace {

namespace toolkit = lumodevice::toolkit;

const Instruction& findInstruction(const std::string& name) {
  const auto found = std::ranges::find(instructions(), name, &Instruction::name);
  if (found == instructions().end()) {
    std::vector<std::string> names;
    for (const Instruction& instruction : instructions()) {
      names.emplace_back(instruction.name);
    }
    throw ScriptMistake("unknown instruction " + escaped(name) + didYouMean(name, names));
  }
  return *found;
}

void checkArguments(const Instruction& instruction, std::size_t count) {
  if (count < instruction.least() || count > instruction.most()) {
    throw ScriptMistake(
        std::string(count < instruction.least() ? "too few words" : "too many words") + "; write " +
        std::string(instruction.name) + " " + std::string(instruction.arguments) +
        " (a word that holds blanks goes into double quotes)");
  }
}

/// The i of "Name(i)"; none for a plain name. Cuts it off the name.
std::optional<int> takeIndex(std::string& name) {
  const std::size_t open = name.find('(');
  if (open == std::string::npos || !name.ends_with(')')) {
    return std::nullopt;
  }
  const auto index = parseWhole(std::string_view(name).substr(open + 1, name.size() - open - 2));
  if (index) {
    name.resize(open);
  }
  return index;
}

/// As some editors begin a file.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr std::size_t kLongestLine = std::size_t{1} << 20;

/// The next line without its end; no more of it than shows that it is too long. False at the end.
bool readLine(std::istream& lines, std::string& line) {
  line.clear();
  char byte = 0;
  while (lines.get(byte) && byte != '\n') {
    line += byte;
    if (line.size() > kLongestLine + 1) {
      return true;
    }
  }
  if (line.ends_with('\r')) {
    line.pop_back();
  }
  return static_cast<bool>(lines) || !line.empty();
}

}  // namespace

std::size_t Instruction::most() const {
  return arguments.empty() ? 0 : static_cast<std::size_t>(std::ranges::count(arguments, ' ')) + 1;
}

std::size_t Instruction::least() const {
  return most() - static_cast<std::size_t>(std::ranges::count(arguments, '['));
}

toolkit::Control& Script::control(const std::string& name) {
  std::string plain = name;
  const std::optional<int> index = takeIndex(plain);
  const toolkit::Surface& surface = component_.surface();
  if (toolkit::Control* const found = surface.find(plain, index)) {
    return *found;
  }
  const auto namesake = std::ranges::find_if(
      surface.controls(), [&](const auto& candidate) { return candidate->name() == plain; });
  if (namesake == surface.controls().end()) {
    // An index that is none is not a matter of the name.
    const bool named = plain.find('(') == std::string::npos;
    throw ScriptMistake("unknown control " + escaped(name) +
                        (named ? didYouMean(plain, namesOfControls(surface)) : ""));
  }
  throw ScriptMistake((*namesake)->index()
                          ? plain + " is a control array without the element " + escaped(name) +
                                "; its first is " + (*namesake)->fullName()
                          : plain + " is no control array");
}

void Script::addKey(lumodevice::devButton key) {
  keys_.push_back(std::move(key));
  try {
    component_.setKeys(keys_);
  } catch (const std::length_error&) {
    keys_.pop_back();
    throw ScriptMistake("the front-panel picture has no room for more than " +
                        std::to_string(keys_.size()) + " key areas");
  }
}

void Script::perform(std::string_view line) {
  const std::vector<std::string> words = splitWords(line);
  if (words.empty()) {
    return;
  }
  const Instruction& instruction = findInstruction(words[0]);
  checkArguments(instruction, words.size() - 1);
  instruction.run(*this, Words(words).subspan(1));
}

ExitStatus Script::run(std::istream& lines, const std::string& file) {
  std::string line;
  long number = 1;
  const auto report = [&](std::string_view wrong) {
    remarks_.line(file + ":" + std::to_string(number) + ": " + std::string(wrong));
    return kFailed;
  };
  for (; readLine(lines, line); ++number) {
    try {
      if (line.size() > kLongestLine) {
        throw ScriptMistake("the line has more than " + std::to_string(kLongestLine) + " bytes");
      }
      if (number == 1 && line.starts_with(kByteOrderMark)) {
        line.erase(0, kByteOrderMark.size());
      }
      perform(line);
    } catch (const ScriptMistake& mistake) {
      return report(mistake.what());
    }
    if (output_.closed()) {
      return kOutputClosed;
    }
  }
  return lines.bad() ? report("cannot be read") : kDone;
}

}  // namespace zanctl
