#pragma once

namespace zansim {

/// White space between the parts of a message: the blank and every control character but DEL.
[[nodiscard]] constexpr bool isBlank(char c) {
  return c >= '\0' && c <= ' ';
}

/// Upper case of an ASCII letter, whatever the locale.
[[nodiscard]] constexpr char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace zansim
