#include "hosts/zanctl/output/nearest.hpp"

#include <algorithm>
#include <cctype>

namespace zanctl {

namespace {

bool same(char left, char right) {
  return std::tolower(static_cast<unsigned char>(left)) ==
         std::tolower(static_cast<unsigned char>(right));
}

/// How many letters have to be changed, left out or put in, or swapped with their neighbour.
std::size_t distance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> beforeLast(to.size() + 1);
  std::vector<std::size_t> last(to.size() + 1);
  for (std::size_t j = 0; j <= to.size(); ++j) {
    last[j] = j;
  }
  for (std::size_t i = 1; i <= from.size(); ++i) {
    std::vector<std::size_t> row(to.size() + 1, i);
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t changed = last[j - 1] + (same(from[i - 1], to[j - 1]) ? 0 : 1);
      row[j] = std::min({changed, last[j] + 1, row[j - 1] + 1});
      if (i > 1 && j > 1 && same(from[i - 1], to[j - 2]) && same(from[i - 2], to[j - 1])) {
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
      }
    }
    beforeLast = std::move(last);
    last = std::move(row);
  }
  return last.back();
}

}  // namespace

std::string_view nearest(std::string_view word, const std::vector<std::string>& names) {
  constexpr std::size_t kLongest = 64;  // of a word that is looked at
  constexpr std::size_t kLettersAMistake = 3;
  std::string_view best;
  std::size_t least = std::min(word.size(), kLongest) / kLettersAMistake + 1;
  if (word.empty() || word.size() > kLongest) {
    return best;
  }
  for (const std::string& name : names) {
    const std::size_t mistakes = distance(word, name);
    if (mistakes <= least && mistakes < name.size() && (mistakes < least || best.empty())) {
      best = name;
      least = mistakes;
    }
  }
  return best;
}

std::string didYouMean(std::string_view word, const std::vector<std::string>& names) {
  const std::string_view name = nearest(word, names);
  return name.empty() ? "" : "; did you mean " + std::string(name) + "?";
}

}  // namespace zanctl
