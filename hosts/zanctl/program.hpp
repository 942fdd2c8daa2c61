#pragma once

#include <string>
#include <vector>

#include "hosts/zanctl/command_line.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// The whole program: reads the command line (without the program's name) and runs its command.
[[nodiscard]] ExitStatus runProgram(const std::vector<std::string>& words,
                                    const Environment& environment, const Streams& streams);

}  // namespace zanctl
