#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

/// The output of `--json`: one object a line, in ASCII.
namespace zanctl {

/// Keeps its members in the order in which they are written.
using Json = nlohmann::ordered_json;

/// The object in one line, without the line's end. A text that is no UTF-8 has U+FFFD where it is
/// not.
[[nodiscard]] std::string jsonLine(const Json& object);

/// A text of the wire, of which each byte is a character.
[[nodiscard]] Json wireText(std::string_view bytes);

/// The number that an instrument answered; null for a text that is none.
[[nodiscard]] Json wireNumber(std::string_view text);

}  // namespace zanctl
