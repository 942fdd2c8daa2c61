#pragma once

#include <span>

#include "simulator/command.hpp"

namespace zansim {

/// Identity, status, errors.
[[nodiscard]] std::span<const Row> systemCommands();
/// What the mainframe holds and which channel the others act on.
[[nodiscard]] std::span<const Row> channelCommands();

/// All tables in the order in which they are searched.
[[nodiscard]] std::span<const std::span<const Row>> commandTables();

}  // namespace zansim
