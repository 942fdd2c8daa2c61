#include "simulator/commands/command_tables.hpp"
#include "simulator/load/channel.hpp"
#include "simulator/mainframe.hpp"

namespace zansim {
namespace {

constexpr int kDecimals = 4;
/// What SCPI answers where the range holds no reading.
constexpr std::string_view kOverRange = "9.9E37";

void reply(Call& call, double (*value)(const Terminals&)) {
  if (const Channel* const channel = call.channel()) {
    call.replyFixed(value(channel->terminals()), kDecimals);
  }
}

void replyInRange(Call& call, double (*value)(const Terminals&)) {
  const Channel* const channel = call.channel();
  if (channel != nullptr && channel->isOverRange()) {
    call.reply(kOverRange);
  } else {
    reply(call, value);
  }
}

void readVolts(Call& call) {
  replyInRange(call, [](const Terminals& terminals) { return terminals.volts; });
}
void readAmps(Call& call) {
  reply(call, [](const Terminals& terminals) { return terminals.amps; });
}
void readWatts(Call& call) {
  replyInRange(call, [](const Terminals& terminals) { return terminals.watts(); });
}

void judge(Call& call) {
  const Channel* const channel = call.channel();
  if (channel == nullptr) {
    return;
  }
  switch (channel->verdict()) {
    case Verdict::NotJudged:
      return call.reply("NONE");
    case Verdict::Go:
      return call.reply("GO");
    case Verdict::NoGo:
      return call.reply("NOGO");
  }
}

constexpr Row kRows[] = {
    {.header = ":FETCh:VOLTage", .query = readVolts},
    {.header = ":FETCh:CURRent", .query = readAmps},
    {.header = ":FETCh:POWer", .query = readWatts},
    {.header = ":MEASure:VOLTage", .query = readVolts},
    {.header = ":MEASure:CURRent", .query = readAmps},
    {.header = ":MEASure:POWer", .query = readWatts},
    {.header = ":SPECification:RESult", .query = judge},
};

}  // namespace

std::span<const Row> readingCommands() {
  return kRows;
}

}  // namespace zansim
