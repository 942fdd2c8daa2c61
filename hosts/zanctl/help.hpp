#pragma once

#include <string>

/// The parts of --help that come from the tables of this program.
namespace zanctl {

/// The variables that stand in for options, and how the program ends.
[[nodiscard]] std::string environmentHelp();

/// The instructions of a host script and the automation members.
[[nodiscard]] std::string scriptHelp();

}  // namespace zanctl
