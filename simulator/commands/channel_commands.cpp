#include <cmath>

#include "simulator/commands/command_tables.hpp"
#include "simulator/mainframe.hpp"

namespace zansim {
namespace {

Bounds channels(const Mainframe& mainframe) {
  return {1, static_cast<double>(mainframe.channelCount()), 1};
}

/// False, and the call fails, where every slot is empty.
bool hasChannels(Call& call) {
  if (call.mainframe.channelCount() == 0) {
    call.fail(Error::HardwareMissing);
    return false;
  }
  return true;
}

void listSlots(Call& call) {
  const char* separator = "";
  for (const std::string& slot : call.mainframe.configuration().slots) {
    call.reply(separator);
    call.reply(slot);
    separator = ",";
  }
}

void selectChannel(Call& call) {
  if (!hasChannels(call)) {
    return;
  }
  if (const auto channel = call.number(0, channels(call.mainframe))) {
    call.mainframe.selectChannel(static_cast<std::size_t>(std::lround(*channel)));
  }
}

/// In place of a further member of a group stands 0.
void listChannels(Call& call) {
  for (std::size_t channel = 1; channel <= call.mainframe.channelCount(); ++channel) {
    const bool listed = !call.mainframe.groups().isFurtherMember(channel);
    call.reply(channel == 1 ? "" : ",");
    call.reply(listed ? static_cast<double>(channel) : 0);
  }
}

void askChannel(Call& call) {
  if (!hasChannels(call)) {
    return;
  }
  if (call.arguments.count == 0) {
    call.reply(static_cast<double>(call.mainframe.selectedChannel()));
  } else if (isWord(call.arguments.items[0], "LIST")) {
    listChannels(call);
  } else if (const auto channel = call.limit(0, channels(call.mainframe))) {
    call.reply(*channel);
  }
}

constexpr Row kRows[] = {
    {.header = "*RDT", .query = listSlots},
    {.header = ":CHANnel",
     .query = askChannel,
     .set = selectChannel,
     .mostQueryArguments = 1,
     .setArguments = 1},
};

}  // namespace

std::span<const Row> channelCommands() {
  return kRows;
}

}  // namespace zansim
