#include "simulator/commands/command_tables.hpp"
#include "simulator/mainframe.hpp"

namespace zansim {
namespace {

void identify(Call& call) {
  call.reply(call.mainframe.configuration().identity());
}

void reset(Call& call) {
  call.mainframe.reset(call.now);
}

void clearStatus(Call& call) {
  call.mainframe.status().clear();
}

void readEvents(Call& call) {
  call.reply(call.mainframe.status().takeEvents());
}

/// Every command is complete before the next one is looked at.
void noteComplete(Call& call) {
  call.mainframe.status().set(kOperationComplete);
}
void replyComplete(Call& call) {
  call.reply("1");
}

void nextError(Call& call) {
  call.reply(errorText(call.mainframe.status().take()));
}

constexpr Row kRows[] = {
    {.header = "*IDN", .query = identify},
    {.header = "*RST", .set = reset},
    {.header = "*CLS", .set = clearStatus},
    {.header = "*ESR", .query = readEvents},
    {.header = "*OPC", .query = replyComplete, .set = noteComplete},
    {.header = ":SYSTem:ERRor[:NEXT]", .query = nextError},
};

}  // namespace

std::span<const Row> systemCommands() {
  return kRows;
}

std::span<const std::span<const Row>> commandTables() {
  static const std::span<const Row> tables[] = {
      readingCommands(), systemCommands(),     channelCommands(),
      settingCommands(), protectionCommands(), displayCommands(),
      memoryCommands(),  groupCommands(),      keyboardCommands()};
  return tables;
}

}  // namespace zansim
