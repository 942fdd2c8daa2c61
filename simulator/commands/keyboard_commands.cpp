#include <algorithm>
#include <iterator>

#include "simulator/commands/command_tables.hpp"
#include "simulator/commands/setting_rows.hpp"
#include "simulator/load/channel.hpp"
#include "simulator/mainframe.hpp"

namespace zansim {
namespace {

struct Key {
  double code;
  void (*press)(Call& call);
};

void toggleLoad(Call& call) {
  if (const Channel* const channel = call.channel()) {
    call.switchLoad(!channel->isOn());
  }
}

void nextChannel(Call& call) {
  if (call.channel() != nullptr) {
    call.mainframe.selectNextChannel();
  }
}

void turnPage(Call& call) {
  call.mainframe.turnPage();
}

constexpr Key kKeys[] = {
    {111, toggleLoad},   // LOAD
    {112, nextChannel},  // CHAN
    {113, turnPage},     // F1
};

/// A key does its work when it is pressed (1); letting go of it (0) does nothing.
void key(Call& call) {
  const auto code = call.number(0, {kKeys[0].code, std::rbegin(kKeys)->code, kKeys[0].code});
  const auto pressed = code ? call.choice(1, kOffOn) : std::nullopt;
  if (!pressed) {
    return;
  }
  const auto* const found = std::find_if(std::begin(kKeys), std::end(kKeys),
                                         [&](const Key& known) { return known.code == *code; });
  if (found == std::end(kKeys)) {
    call.fail(Error::OutOfRange);
  } else if (*pressed) {
    found->press(call);
  }
}

constexpr Row kRows[] = {
    {.header = ":KEYBoard:CODE", .set = key, .setArguments = 2},
};

}  // namespace

std::span<const Row> keyboardCommands() {
  return kRows;
}

}  // namespace zansim
