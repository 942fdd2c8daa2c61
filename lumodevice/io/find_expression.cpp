#include "lumodevice/io/find_expression.hpp"

#include <utility>

namespace lumodevice::io {

/// Builds the automaton by recursive descent; each piece has one state to enter and one to leave it
/// by.
class FindExpressionParser {
 public:
  explicit FindExpressionParser(std::string_view text) : text_(text) {}

  std::optional<FindExpression> parse() {
    if (text_.empty() || text_.size() > FindExpression::kLongest) return {};
    const auto whole = alternatives(0);
    if (!whole || position_ != text_.size()) return {};
    result_.start_ = whole->start;
    result_.end_ = whole->end;
    return std::move(result_);
  }

 private:
  using CharacterSet = FindExpression::CharacterSet;
  struct Piece {
    int start;
    int end;
  };

  int addState(int next = -1, int other = -1) {
    result_.states_.push_back({.takes = {}, .next = next, .other = other});
    return static_cast<int>(result_.states_.size()) - 1;
  }
  void link(int from, int next) { result_.states_[static_cast<std::size_t>(from)].next = next; }

  [[nodiscard]] bool at(char c) const { return position_ < text_.size() && text_[position_] == c; }
  bool accept(char c) {
    if (!at(c)) return false;
    ++position_;
    return true;
  }
  std::optional<unsigned char> take() {
    if (position_ == text_.size()) return {};
    return static_cast<unsigned char>(text_[position_++]);
  }

  std::optional<Piece> alternatives(int depth) {
    auto whole = sequence(depth);
    while (whole && accept('|')) {
      const auto branch = sequence(depth);
      if (!branch) return {};
      const int end = addState();
      link(whole->end, end);
      link(branch->end, end);
      whole = Piece{addState(whole->start, branch->start), end};
    }
    return whole;
  }

  std::optional<Piece> sequence(int depth) {
    auto whole = repeated(depth);
    while (whole && position_ < text_.size() && !at('|') && !at(')')) {
      const auto following = repeated(depth);
      if (!following) return {};
      link(whole->end, following->start);
      whole->end = following->end;
    }
    return whole;
  }

  std::optional<Piece> repeated(int depth) {
    auto piece = item(depth);
    while (piece && (at('*') || at('+'))) {
      const bool mayBeMissing = take() == '*';
      const int end = addState();
      const int again = addState(piece->start, end);
      link(piece->end, again);
      piece = Piece{mayBeMissing ? again : piece->start, end};
    }
    return piece;
  }

  std::optional<Piece> item(int depth) {
    const auto c = take();
    if (!c) return {};
    switch (*c) {
      case '(':
        return group(depth + 1);
      case '[':
        return list();
      case '?':
        return taking(CharacterSet().set());
      case '\\': {
        const auto literal = take();
        if (!literal) return {};
        return taking(range(*literal, *literal));
      }
      case '*':
      case '+':
      case '|':
      case ')':
      case ']':
      case '{':
      case '}':
        return {};
      default:
        return taking(range(*c, *c));
    }
  }

  std::optional<Piece> group(int depth) {
    if (depth > FindExpression::kDeepest) return {};
    const auto inner = alternatives(depth);
    return inner && accept(')') ? inner : std::nullopt;
  }

  std::optional<Piece> list() {
    const bool inverted = accept('^');
    CharacterSet set;
    do {
      const auto first = listed();
      if (!first) return {};
      auto last = first;
      if (at('-') && position_ + 1 < text_.size() && text_[position_ + 1] != ']') {
        ++position_;
        last = listed();
      }
      if (!last || *last < *first) return {};
      set |= range(*first, *last);
    } while (!accept(']'));
    if (inverted) set.flip();
    if (set.none()) return {};
    return taking(set);
  }

  std::optional<unsigned char> listed() {
    if (at(']')) return {};
    const auto c = take();
    return c == '\\' ? take() : c;
  }

  static CharacterSet range(unsigned char first, unsigned char last) {
    CharacterSet set;
    for (unsigned c = first; c <= last; ++c) {
      set.set(c);
      if (c >= 'a' && c <= 'z') set.set(c - 'a' + 'A');
      if (c >= 'A' && c <= 'Z') set.set(c - 'A' + 'a');
    }
    return set;
  }

  Piece taking(const CharacterSet& set) {
    const int end = addState();
    const int start = addState(end);
    result_.states_.back().takes = set;
    return {start, end};
  }

  std::string_view text_;
  std::size_t position_ = 0;
  FindExpression result_;
};

std::optional<FindExpression> FindExpression::parse(std::string_view expression) {
  return FindExpressionParser(expression).parse();
}

/// Adds `state` and all that can be reached from it without taking a character.
void FindExpression::enter(int state, std::vector<int>& entered, std::vector<bool>& marked) const {
  std::vector<int> waiting{state};
  while (!waiting.empty()) {
    const int index = waiting.back();
    waiting.pop_back();
    if (index < 0 || marked[static_cast<std::size_t>(index)]) continue;
    marked[static_cast<std::size_t>(index)] = true;
    entered.push_back(index);
    const State& reached = states_[static_cast<std::size_t>(index)];
    if (reached.takes.any()) continue;
    waiting.push_back(reached.next);
    waiting.push_back(reached.other);
  }
}

bool FindExpression::matches(std::string_view name) const {
  std::vector<int> here;
  std::vector<bool> marked(states_.size());
  enter(start_, here, marked);
  for (const char c : name) {
    std::vector<int> there;
    marked.assign(states_.size(), false);
    for (const int index : here) {
      const State& state = states_[static_cast<std::size_t>(index)];
      if (state.takes.test(static_cast<unsigned char>(c))) enter(state.next, there, marked);
    }
    here.swap(there);
  }
  return marked[static_cast<std::size_t>(end_)];
}

}  // namespace lumodevice::io
