#include "hosts/zanctl/script/words.hpp"

#include <algorithm>

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

namespace {

constexpr std::string_view kBlanks = " \t";

void skipBlanks(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
}

/// The word whose opening quote was just passed; cuts it off together with its closing quote.
std::string takeQuoted(std::string_view& rest) {
  std::string word;
  while (!rest.empty() && rest[0] != '"') {
    const char next = rest[0];
    rest.remove_prefix(1);
    word += next == '\\' ? takeEscape(rest) : next;
  }
  if (rest.empty()) {
    throw ScriptMistake("the closing quote is missing");
  }
  rest.remove_prefix(1);
  if (!rest.empty() && kBlanks.find(rest[0]) == std::string_view::npos) {
    throw ScriptMistake("a blank is missing behind the closing quote");
  }
  return word;
}

std::string takeBare(std::string_view& rest) {
  const std::string_view word = rest.substr(0, rest.find_first_of(kBlanks));
  rest.remove_prefix(word.size());
  if (word.find('"') != std::string_view::npos) {
    throw ScriptMistake("a quote inside the word " + escaped(word) +
                        "; put the whole word into quotes and write \\\" for the inner one");
  }
  return std::string(word);
}

}  // namespace

std::vector<std::string> splitWords(std::string_view line) {
  std::vector<std::string> words;
  skipBlanks(line);
  if (line.starts_with('#')) {
    return words;
  }
  while (!line.empty()) {
    if (line[0] == '"') {
      line.remove_prefix(1);
      words.push_back(takeQuoted(line));
    } else {
      words.push_back(takeBare(line));
    }
    skipBlanks(line);
  }
  return words;
}

}  // namespace zanctl
