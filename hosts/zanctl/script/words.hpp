#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zanctl {

/// The words of one line of a host script: none for a blank line and for a comment. Words are
/// separated by blanks or tabs; one in double quotes may hold blanks and the escapes \n \r \t \"
/// \\ \xHH. Throws ScriptMistake for a quote or an escape that is not as it should be.
[[nodiscard]] std::vector<std::string> splitWords(std::string_view line);

}  // namespace zanctl
