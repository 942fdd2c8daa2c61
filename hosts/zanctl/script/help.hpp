#pragma once

#include <string>

namespace zanctl {

/// The instructions of a host script and the automation members.
[[nodiscard]] std::string scriptHelp();

}  // namespace zanctl
