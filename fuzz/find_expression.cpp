// A find expression and a resource name, a line each: both are read here once more by the rules
// that users are told, with sets of places in the name instead of an automaton. Both refuse the
// same expressions, and find the same names.

#include "lumodevice/io/find_expression.hpp"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/require.hpp"

namespace {

using lumodevice::fuzz::require;
using lumodevice::io::FindExpression;

/// Places in a name, between its characters; place 0 is in front of all.
constexpr std::size_t kLongestName = 62;
using Places = std::uint64_t;
using Characters = std::bitset<256>;

char otherCase(char c) {
  if (c >= 'a' && c <= 'z') return static_cast<char>(c - 'a' + 'A');
  if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
  return c;
}

unsigned char code(char c) {
  return static_cast<unsigned char>(c);
}

/// A part of an expression, and the one or two parts that it is made of, by their numbers.
struct Part {
  enum class Kind { One, NoneOrMore, OneOrMore, Both, Either };
  Kind kind = Kind::One;
  Characters wanted = {};
  std::size_t first = 0;
  std::size_t second = 0;
};
using Parts = std::vector<Part>;

/// Repetitions inside repetitions double the steps with each level: so many are worth their time.
constexpr int kMostSteps = 2000;

/// Where one can be behind what a part takes, from any of these places. Wrong when no step is left.
Places behind(const Parts& parts, std::size_t number, std::string_view name, Places from,
              int& steps) {
  if (steps == 0) return from;
  --steps;
  const Part& part = parts[number];
  const auto behindFirst = [&](Places places) {
    return behind(parts, part.first, name, places, steps);
  };
  switch (part.kind) {
    case Part::Kind::Both:
      return behind(parts, part.second, name, behindFirst(from), steps);
    case Part::Kind::Either:
      return behindFirst(from) | behind(parts, part.second, name, from, steps);
    case Part::Kind::NoneOrMore:
    case Part::Kind::OneOrMore: {
      Places all = part.kind == Part::Kind::OneOrMore ? behindFirst(from) : from;
      for (Places before = 0; before != all;) {
        before = all;
        all |= behindFirst(all);
      }
      return all;
    }
    case Part::Kind::One:
      break;
  }
  Places to = 0;
  for (std::size_t place = 0; place < name.size(); ++place) {
    if ((from >> place & 1U) != 0 && part.wanted.test(code(name[place]))) to |= Places{2} << place;
  }
  return to;
}

/// Reads an expression by recursive descent: each function takes what it knows off `rest_` and
/// returns the number of the part that it made; none when it cannot.
class Rules {
 public:
  explicit Rules(std::string_view expression) : rest_(expression) {
    if (expression.size() <= FindExpression::kLongest) whole_ = either(0);
    if (!rest_.empty()) whole_.reset();
  }

  [[nodiscard]] bool valid() const { return whole_.has_value(); }
  /// Nothing when that takes too long to find out.
  [[nodiscard]] std::optional<bool> matches(std::string_view name) const {
    int steps = kMostSteps;
    const bool matches = (behind(parts_, *whole_, name, 1, steps) >> name.size() & 1U) != 0;
    return steps > 0 ? std::optional(matches) : std::nullopt;
  }

 private:
  using Made = std::optional<std::size_t>;

  std::size_t make(const Part& part) {
    parts_.push_back(part);
    return parts_.size() - 1;
  }
  std::size_t one(const Characters& wanted) { return make({.wanted = wanted}); }

  char take() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }
  bool takes(char c) {
    if (!rest_.starts_with(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  Made either(int depth) {
    const Made first = chain(depth);
    if (!first || !takes('|')) return first;
    const Made others = either(depth);
    if (!others) return {};
    return make({.kind = Part::Kind::Either, .first = *first, .second = *others});
  }

  Made chain(int depth) {
    Made first = single(depth);
    if (!first) return {};
    while (!rest_.empty() && (rest_.front() == '*' || rest_.front() == '+')) {
      const auto kind = take() == '*' ? Part::Kind::NoneOrMore : Part::Kind::OneOrMore;
      first = make({.kind = kind, .first = *first});
    }
    if (rest_.empty() || rest_.front() == '|' || rest_.front() == ')') return first;
    const Made others = chain(depth);
    if (!others) return {};
    return make({.kind = Part::Kind::Both, .first = *first, .second = *others});
  }

  Made single(int depth) {
    if (rest_.empty()) return {};
    const char c = take();
    if (c == '?') return one(Characters().set());
    if (c == '[') return list();
    if (c == '(') {
      if (depth == FindExpression::kDeepest) return {};
      const Made inner = either(depth + 1);
      return takes(')') ? inner : std::nullopt;
    }
    if (c == '\\') return rest_.empty() ? std::nullopt : Made(one(both(take())));
    if (std::string_view("*+|)]{}").find(c) != std::string_view::npos) return {};
    return one(both(c));
  }

  Made list() {
    const bool others = takes('^');
    Characters wanted;
    bool any = false;
    while (!takes(']')) {
      const auto first = listed();
      if (!first) return {};
      auto last = first;
      if (rest_.size() > 1 && rest_[0] == '-' && rest_[1] != ']') {
        take();
        last = listed();
      }
      if (!last || code(*last) < code(*first)) return {};
      for (int c = code(*first); c <= code(*last); ++c) wanted |= both(static_cast<char>(c));
      any = true;
    }
    if (others) wanted.flip();
    if (!any || wanted.none()) return {};
    return one(wanted);
  }

  std::optional<char> listed() {
    if (rest_.empty()) return {};
    const char c = take();
    if (c != '\\') return c;
    return rest_.empty() ? std::nullopt : std::optional(take());
  }

  static Characters both(char c) { return Characters().set(code(c)).set(code(otherCase(c))); }

  std::string_view rest_;
  Parts parts_;
  Made whole_;
};

void checkExpression(std::string_view expression, std::string_view name) {
  const auto found = FindExpression::parse(expression);
  const Rules byRules(expression);
  require(found.has_value() == byRules.valid(), "the same expressions are refused");
  if (!found) return;
  const bool matches = found->matches(name);
  require(byRules.matches(name).value_or(matches) == matches, "the same names are found");

  std::string swapped(name);
  for (char& c : swapped) c = otherCase(c);
  require(found->matches(swapped) == matches, "case does not matter");
}

/// A name with "\" in front of each character finds itself and nothing longer.
void checkLiteral(std::string_view name) {
  std::string expression;
  for (const char c : name) expression.append({'\\', c});
  const auto literal = FindExpression::parse(expression);
  require(literal.has_value() == !name.empty(), "a name can be written as an expression");
  if (!literal) return;
  require(literal->matches(name), "a name finds itself");
  require(!literal->matches(std::string(name) + 'x'), "a name finds nothing longer");
  require(!literal->matches(name.substr(1)), "a name finds nothing shorter");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view expression = input.substr(0, input.find('\n'));
  std::string_view name = input.substr(expression.size());
  if (!name.empty()) name = name.substr(1, kLongestName);
  checkExpression(expression, name);
  checkLiteral(name);
  return 0;
}
