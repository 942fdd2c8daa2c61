#pragma once

#include <span>

#include "hosts/zanctl/commands/command.hpp"

// One row a command, in the order of the help. Each stands in the file of its name.
#define ZANCTL_COMMANDS(ROW) \
  ROW(kRun)                  \
  ROW(kList)                 \
  ROW(kConnect)              \
  ROW(kSend)                 \
  ROW(kErrors)               \
  ROW(kReadings)             \
  ROW(kLog)                  \
  ROW(kCapture)              \
  ROW(kConvert)              \
  ROW(kFiles)                \
  ROW(kControls)             \
  ROW(kTrace)                \
  ROW(kDemo)

namespace zanctl {

#define ZANCTL_DECLARE(command) extern const Command command;
ZANCTL_COMMANDS(ZANCTL_DECLARE)
#undef ZANCTL_DECLARE

[[nodiscard]] std::span<const Command* const> commands();

}  // namespace zanctl
