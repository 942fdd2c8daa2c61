#include "simulator/find_expression.hpp"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "simulator/characters.hpp"

namespace zansim {
namespace {

constexpr std::size_t kLongest = 256;
constexpr int kDeepest = 8;

/// The places in a name that a match may have come to.
using Places = std::vector<bool>;

bool merge(Places& into, const Places& from) {
  bool grew = false;
  for (std::size_t i = 0; i < into.size(); ++i) {
    if (from[i] && !into[i]) {
      into[i] = true;
      grew = true;
    }
  }
  return grew;
}

/// Follows all matches at once, so no expression takes more than polynomial time.
class Matcher {
 public:
  Matcher(std::string_view expression, std::string_view name) : text_(expression), name_(name) {}

  /// Whether the whole name matches; `valid` afterwards tells whether the expression could be read.
  bool run() {
    Places places(name_.size() + 1);
    places.front() = true;
    places = alternatives(places);
    valid_ = valid_ && at_ == text_.size() && !text_.empty() && text_.size() <= kLongest;
    return valid_ && places.back();
  }

  [[nodiscard]] bool valid() const { return valid_; }

 private:
  [[nodiscard]] bool more() const { return valid_ && at_ < text_.size(); }
  [[nodiscard]] bool at(char c) const { return more() && text_[at_] == c; }

  Places alternatives(const Places& from) {
    Places result = sequence(from);
    while (at('|')) {
      ++at_;
      merge(result, sequence(from));
    }
    return result;
  }

  Places sequence(const Places& from) {
    Places places = from;
    const std::size_t start = at_;
    while (more() && text_[at_] != '|' && text_[at_] != ')') {
      places = repeated(places);
    }
    valid_ = valid_ && at_ > start;
    return places;
  }

  Places repeated(const Places& from) {
    const std::size_t start = at_;
    Places once = item(from);
    if (!at('*') && !at('+')) {
      return once;
    }
    const bool mayBeAbsent = text_[at_] == '*';
    const std::size_t after = at_ + 1;
    for (bool grew = true; grew && valid_;) {
      at_ = start;
      grew = merge(once, item(once));
    }
    at_ = after;
    if (mayBeAbsent) {
      merge(once, from);
    }
    return once;
  }

  Places item(const Places& from) {
    const char c = text_[at_];
    ++at_;
    switch (c) {
      case '(':
        return group(from);
      case '[':
        return list(from);
      case '?':
        return step(from, [](char) { return true; });
      case '\\':
        return escaped(from);
      case '*':
      case '+':
      case ']':
      case '{':
      case '}':
        valid_ = false;
        return from;
      default:
        return step(from, [c](char other) { return upper(c) == other; });
    }
  }

  Places group(const Places& from) {
    valid_ = valid_ && ++depth_ <= kDeepest;
    Places places = valid_ ? alternatives(from) : from;
    --depth_;
    valid_ = at(')');
    ++at_;
    return places;
  }

  Places escaped(const Places& from) {
    valid_ = more();
    const char c = valid_ ? text_[at_] : '\0';
    ++at_;
    return step(from, [c](char other) { return upper(c) == other; });
  }

  Places list(const Places& from) {
    const bool negated = at('^');
    at_ += negated ? 1 : 0;
    const std::size_t close = text_.find(']', at_ + 1);
    if (close == std::string_view::npos) {
      valid_ = false;
      return from;
    }
    const std::string_view members = text_.substr(at_, close - at_);
    at_ = close + 1;
    return step(from, [&](char other) { return isMember(members, other) != negated; });
  }

  static bool isMember(std::string_view members, char c) {
    for (std::size_t i = 0; i < members.size(); ++i) {
      const bool range = i + 2 < members.size() && members[i + 1] == '-';
      const char last = range ? members[i + 2] : members[i];
      if (upper(members[i]) <= c && c <= upper(last)) {
        return true;
      }
      i += range ? 2 : 0;
    }
    return false;
  }

  template <typename Fits>
  [[nodiscard]] Places step(const Places& from, Fits fits) const {
    Places places(from.size());
    for (std::size_t i = 0; i < name_.size(); ++i) {
      places[i + 1] = from[i] && fits(upper(name_[i]));
    }
    return places;
  }

  std::string_view text_;
  std::string_view name_;
  std::size_t at_ = 0;
  int depth_ = 0;
  bool valid_ = true;
};

}  // namespace

bool isFindExpression(std::string_view expression) {
  Matcher matcher(expression, "");
  matcher.run();
  return matcher.valid();
}

bool findExpressionMatches(std::string_view expression, std::string_view name) {
  return Matcher(expression, name).run();
}

}  // namespace zansim
