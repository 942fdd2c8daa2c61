#include <array>
#include <cmath>

#include "simulator/commands/command_tables.hpp"
#include "simulator/mainframe.hpp"

namespace zansim {
namespace {

constexpr Words kModes = {"SYNC", "PARAllel"};
constexpr std::string_view kModeAnswers[] = {"SYNC", "PARA"};

/// In the order of Mainframe::Style.
constexpr std::array<std::string_view, 4> kStyles = {"VI", "VW", "IW", "S"};

[[nodiscard]] Group group(const Call& call) {
  return call.mainframe.groups().of(call.mainframe.selectedChannel());
}

void setUnit(Call& call) {
  if (call.channel() == nullptr) {
    return;
  }
  const auto size = call.number(0, {1, static_cast<double>(call.mainframe.channelCount()), 1});
  if (size && !call.mainframe.resizeGroup(static_cast<std::size_t>(std::lround(*size)), call.now)) {
    call.fail(Error::SettingsConflict);
  }
}

void askUnit(Call& call) {
  if (call.channel() != nullptr) {
    call.reply(static_cast<double>(group(call).size));
  }
}

void setMode(Call& call) {
  if (call.channel() == nullptr) {
    return;
  }
  const auto parallel = call.choice(0, kModes);
  if (parallel && !call.mainframe.setParallel(*parallel, call.now)) {
    call.fail(Error::SettingsConflict);
  }
}

void askMode(Call& call) {
  if (call.channel() != nullptr) {
    call.reply(kModeAnswers[group(call).parallel ? 1 : 0]);
  }
}

void setStyle(Call& call) {
  for (std::size_t i = 0; i < kStyles.size(); ++i) {
    if (isWord(call.arguments.items[0], kStyles[i])) {
      call.mainframe.setStyle(static_cast<Mainframe::Style>(i));
      return;
    }
  }
  call.failWord(0);
}

void askStyle(Call& call) {
  call.reply(kStyles[static_cast<std::size_t>(call.mainframe.style())]);
}

constexpr Row kRows[] = {
    {.header = ":CONFigure:PARallel:UNIT", .query = askUnit, .set = setUnit, .setArguments = 1},
    {.header = ":CONFigure:PARallel:MODE", .query = askMode, .set = setMode, .setArguments = 1},
    {.header = ":SHOW", .query = askStyle, .set = setStyle, .setArguments = 1},
};

}  // namespace

std::span<const Row> groupCommands() {
  return kRows;
}

}  // namespace zansim
