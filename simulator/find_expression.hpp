#pragma once

#include <string_view>

namespace zansim {

/// True for a resource expression that can be read: "?" any character, "*" and "+" repeat what
/// stands before them, "[list]" and "[^list]" with ranges, "|", "(" ")" and "\" before a character
/// meant as itself. The part in braces that asks for attributes is not supported.
[[nodiscard]] bool isFindExpression(std::string_view expression);

/// True when the expression, which must be readable, matches the whole of `name` in any case.
[[nodiscard]] bool findExpressionMatches(std::string_view expression, std::string_view name);

}  // namespace zansim
