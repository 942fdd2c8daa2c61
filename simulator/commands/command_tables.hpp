#pragma once

#include <span>

#include "simulator/commands/command.hpp"

namespace zansim {

/// Identity, status, errors.
[[nodiscard]] std::span<const Row> systemCommands();
/// What the mainframe holds and which channel the others act on.
[[nodiscard]] std::span<const Row> channelCommands();

/// Voltage, current, power and the verdict on them.
[[nodiscard]] std::span<const Row> readingCommands();
/// Modes, levels, slew rates, timers, the voltage range, the load switch.
[[nodiscard]] std::span<const Row> settingCommands();
/// Protections, the load-on voltage, Go/NoGo limits.
[[nodiscard]] std::span<const Row> protectionCommands();
/// The picture on the screen.
[[nodiscard]] std::span<const Row> displayCommands();
/// Channels joined into groups and what is shown of them.
[[nodiscard]] std::span<const Row> groupCommands();
/// The keys of the front panel.
[[nodiscard]] std::span<const Row> keyboardCommands();
/// The files that the instrument keeps when it is switched off.
[[nodiscard]] std::span<const Row> memoryCommands();

/// All tables in the order in which they are searched.
[[nodiscard]] std::span<const std::span<const Row>> commandTables();

}  // namespace zansim
