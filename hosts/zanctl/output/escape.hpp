#pragma once

#include <string>
#include <string_view>

/// Bytes as printable text, and back.
namespace zanctl {

/// Control characters, bytes above 0x7E and the backslash as \n, \r, \t, \\ or \xHH.
[[nodiscard]] std::string escaped(std::string_view bytes);

/// The same for a text of the panel's own making, in which a well-formed UTF-8 character stands as
/// it is.
[[nodiscard]] std::string escapedCaption(std::string_view text);

/// A line of text without anything that could move a cursor or end the line: control characters and
/// bytes that are no UTF-8 as above, all else as it is. What has been escaped stays as it is.
[[nodiscard]] std::string printable(std::string_view line);

/// How many columns a printed caption takes: one for each UTF-8 character.
[[nodiscard]] std::size_t columns(std::string_view printed);

/// The byte that the escape at the start of `text` (from behind its backslash) stands for; cuts the
/// escape off. Throws ScriptMistake for an unknown escape.
[[nodiscard]] char takeEscape(std::string_view& text);

}  // namespace zanctl
