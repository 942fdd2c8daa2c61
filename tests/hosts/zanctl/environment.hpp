#pragma once

#include <map>
#include <optional>
#include <string>

#include "hosts/zanctl/command_line.hpp"

namespace zanctl {

/// An environment of these variables alone, as they are when it is asked.
inline Environment environmentOf(const std::map<std::string, std::string>& variables) {
  return [&variables](const char* name) {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  };
}

}  // namespace zanctl
