#include "hosts/zanctl/commands/commands.hpp"

#include <array>

namespace zanctl {

std::span<const Command* const> commands() {
#define ZANCTL_ADDRESS(command) &command,
  static constexpr auto kCommands =
      std::to_array<const Command*>({ZANCTL_COMMANDS(ZANCTL_ADDRESS)});
#undef ZANCTL_ADDRESS
  return kCommands;
}

}  // namespace zanctl
