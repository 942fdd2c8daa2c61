#include "simulator/commands/command_tables.hpp"
#include "simulator/load/channel.hpp"
#include "simulator/mainframe.hpp"

namespace zansim {
namespace {

constexpr int kDecimals = 4;
/// What SCPI answers where the range holds no reading.
constexpr std::string_view kOverRange = "9.9E37";

/// What tells one quantity from another in numbered readings.
enum class Numbered : std::uint8_t { Volts = 10, Amps = 20, Watts = 30 };

struct Quantity {
  double (*of)(const Terminals&);
  Numbered numbered;
  bool limitedByRange;
};

double numberedReading(Mainframe& mainframe, Numbered quantity) {
  constexpr std::uint32_t kNumbers = 100'000;
  constexpr double kStep = 1e-4;
  return static_cast<double>(quantity) + kStep * (mainframe.takeReadingNumber() % kNumbers);
}

void read(Call& call, const Quantity& quantity) {
  const Channel* const channel = call.channel();
  if (channel == nullptr) {
    return;
  }
  if (call.mainframe.configuration().numberedReadings) {
    call.replyFixed(numberedReading(call.mainframe, quantity.numbered), kDecimals);
  } else if (quantity.limitedByRange && channel->isOverRange()) {
    call.reply(kOverRange);
  } else {
    call.replyFixed(quantity.of(channel->terminals()), kDecimals);
  }
}

void readVolts(Call& call) {
  read(call, {[](const Terminals& terminals) { return terminals.volts; }, Numbered::Volts, true});
}
void readAmps(Call& call) {
  read(call, {[](const Terminals& terminals) { return terminals.amps; }, Numbered::Amps, false});
}
void readWatts(Call& call) {
  read(call, {[](const Terminals& terminals) { return terminals.watts(); }, Numbered::Watts, true});
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
