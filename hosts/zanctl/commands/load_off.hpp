#pragma once

#include <functional>
#include <memory>

#include "hosts/zanctl/commands/command.hpp"

namespace zanctl {

/// Adds the option --off-at-end to a command; whether it was given.
[[nodiscard]] std::shared_ptr<const bool> addOffAtEnd(CLI::App& parser);

/// Runs `act`, and switches the load off afterwards, however it ended: also by Ctrl-C, SIGTERM or a
/// lost link, which is then tried to be had back for half a minute. `channel` is the one that is
/// switched off; 0: all that the instrument lists. What could not be switched off is said, and the
/// status is kLoadMayBeOn. An instrument that was never reached is left alone.
[[nodiscard]] ExitStatus switchingOff(Station& station, int channel,
                                      const std::function<ExitStatus()>& act);

}  // namespace zanctl
