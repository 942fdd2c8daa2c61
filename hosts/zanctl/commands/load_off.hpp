#pragma once

#include <functional>
#include <memory>

#include "hosts/zanctl/commands/command.hpp"

namespace zanctl {

/// Adds the option --off-at-end to a command; whether it was given.
[[nodiscard]] std::shared_ptr<const bool> addOffAtEnd(CLI::App& parser);

/// Sends what switches the load of a channel off (0: of all that the instrument lists) and waits
/// for no answer: for an instrument that may not answer any more.
void sendLoadOff(Station& station, int channel);

/// Switches the load of a channel off (0: of all that the instrument lists), also over a link that
/// has to be had back first; it tries for half a minute. Says on `errors` that it is off, or what
/// may still be on. True when the instrument itself has said that it is off. Whether the component
/// observes stays as it is. Ctrl-C and SIGTERM give up:
/// Interrupted goes on.
[[nodiscard]] bool switchLoadOff(Station& station, int channel);

/// Runs `act`, and switches the load off afterwards, however it ended: also by Ctrl-C, SIGTERM or a
/// lost link, which is then tried to be had back for half a minute. `channel` is the one that is
/// switched off; 0: all that the instrument lists. What could not be switched off is said, and the
/// status is kLoadMayBeOn. An instrument that was never reached is left alone.
[[nodiscard]] ExitStatus switchingOff(Station& station, int channel,
                                      const std::function<ExitStatus()>& act);

}  // namespace zanctl
