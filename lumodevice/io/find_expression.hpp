#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace lumodevice::io {

/// A VISA find expression: "?" any character, "*" none or more and "+" one or more of the item
/// before, "[list]" and "[^list]" with ranges, "|" between alternatives, "( )" groups, "\" takes
/// the next character as it is. Case does not matter, and the whole resource name must match.
///
/// A match costs at most (length of the name) x (length of the expression), whatever the
/// expression.
class FindExpression {
 public:
  static constexpr std::size_t kLongest = 1024;
  static constexpr int kDeepest = 32;

  /// Nothing for an expression that is malformed, too long or nested too deeply. Conditions on
  /// attributes in braces are not supported.
  [[nodiscard]] static std::optional<FindExpression> parse(std::string_view expression);

  [[nodiscard]] bool matches(std::string_view name) const;

 private:
  friend class FindExpressionParser;
  using CharacterSet = std::bitset<256>;

  /// A state of the automaton: it either takes one character of a set and goes on to `next`, or
  /// goes on at once to `next` and `other` (-1 is nowhere).
  struct State {
    CharacterSet takes;
    int next = -1;
    int other = -1;
  };

  void enter(int state, std::vector<int>& entered, std::vector<bool>& marked) const;

  std::vector<State> states_;
  int start_ = 0;
  int end_ = 0;
};

}  // namespace lumodevice::io
