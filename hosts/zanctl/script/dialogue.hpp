#pragma once

#include <functional>
#include <optional>
#include <string>

#include "hosts/zanctl/script/script.hpp"

namespace zanctl {

/// Runs each line that a person types as a line of the script, until there is none or "quit". A
/// mistake is remarked, and the next line is asked for. "help" prints what there is to type.
[[nodiscard]] ExitStatus talk(Script& script,
                              const std::function<std::optional<std::string>()>& nextLine);

}  // namespace zanctl
